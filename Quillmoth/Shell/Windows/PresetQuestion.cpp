#include "Quillmoth/Shell/Windows/PresetQuestion.h"

#include "Foundation/Limits.h"

#include "Quillmoth/Shell/Controls/Labels.h"
#include "Quillmoth/Shell/Controls/TextArea.h"
#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Windows/FormParts.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

#include <utility>

namespace quillmoth {

namespace {

constexpr int kQuestionPadding = 24;
constexpr int kQuestionWidth = 520;
constexpr int kQuestionHeight = 580;
constexpr int kBlockGap = 12;
constexpr int kCaptionGap = 4;
constexpr int kButtonsGap = 18;
constexpr int kSystemPromptHeight = 100;
constexpr int kPromptHeight = 180;

const auto kAdvice = QStringLiteral("A link brings it. Its prompts are sent to the service whenever you run "
                                    "it, with what you have selected: add "
                                    "it only if you trust where the link comes from.");

TextArea* makeReadOnlyText(const QString& name, int height) {
    auto* text = new TextArea(height);
    text->setReadOnly(true);
    text->setAccessibleName(name);
    return text;
}

void addCaptioned(QVBoxLayout& column, const QString& caption, QWidget& control, int stretch = 0) {
    auto* label = new QLabel(caption);
    label->setBuddy(&control);
    column.addSpacing(kBlockGap);
    column.addWidget(label);
    column.addSpacing(kCaptionGap);
    column.addWidget(&control, stretch);
}

} // namespace

PresetQuestionWindow::PresetQuestionWindow(ColorScheme& colorScheme)
    : ShellWindow(QStringLiteral("Add a Preset?"), colorScheme), name_(makeField(QStringLiteral("Name"))),
      systemPrompt_(makeReadOnlyText(QStringLiteral("System prompt"), kSystemPromptHeight)),
      prompt_(makeReadOnlyText(QStringLiteral("Prompt"), kPromptHeight)),
      add_(makeFormButton(QStringLiteral("Add Preset"))),
      refuse_(makeFormButton(QStringLiteral("Don’t Add"))) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(kQuestionPadding, kQuestionPadding, kQuestionPadding, kQuestionPadding);
    column->setSpacing(0);
    auto* title = new QLabel(QStringLiteral("Add this preset?"));
    title->setFont(textFont(14, QFont::DemiBold));
    column->addWidget(title);
    column->addSpacing(kCaptionGap);
    column->addWidget(new ToneLabel(Tone::secondary, kAdvice));
    name_->setReadOnly(true);
    addCaptioned(*column, QStringLiteral("Name"), *name_);
    addCaptioned(*column, QStringLiteral("System prompt"), *systemPrompt_, 1);
    addCaptioned(*column, QStringLiteral("Prompt"), *prompt_, 2);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(kBlockGap);
    buttons->addStretch();
    buttons->addWidget(refuse_);
    buttons->addWidget(add_);
    column->addSpacing(kButtonsGap);
    column->addLayout(buttons);
    connect(add_, &QPushButton::clicked, this, [this] { answer(true); });
    connect(refuse_, &QPushButton::clicked, this, [this] { answer(false); });
    resize(kQuestionWidth, kQuestionHeight);
    applyLook();
}

void PresetQuestionWindow::showOffer(const PresetOffer& offer) {
    name_->setText(offer.name);
    name_->setCursorPosition(0);
    systemPrompt_->showText(offer.systemPrompt.isEmpty() ? QStringLiteral("(none)") : offer.systemPrompt,
                            true);
    prompt_->showText(offer.prompt, true);
    isOpen_ = true;
    present();
}

void PresetQuestionWindow::takeFirstFocus() {
    focusVisibly(*refuse_);
}

void PresetQuestionWindow::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape)
        close();
    else if (auto* button = isReturn ? qobject_cast<QPushButton*>(focusWidget()) : nullptr)
        button->click();
    else
        ShellWindow::keyPressEvent(event);
}

void PresetQuestionWindow::closeEvent(QCloseEvent* event) {
    ShellWindow::closeEvent(event);
    answer(false);
}

void PresetQuestionWindow::answer(bool adds) {
    if (!std::exchange(isOpen_, false))
        return;
    close();
    if (onAnswer)
        onAnswer(adds);
}

bool PresetQuestions::ask(PresetOffer offer) {
    if (offers_.size() > limits::kWaitingPresets)
        return false;
    offers_.push_back(std::move(offer));
    if (offers_.size() == 1)
        showNext();
    return true;
}

void PresetQuestions::showNext() {
    if (!window_) {
        window_ = makeWindow_();
        window_->onAnswer = [this](bool adds) { answered(adds); };
    }
    window_->showOffer(offers_.front());
}

void PresetQuestions::answered(bool adds) {
    const PresetOffer offer = std::move(offers_.front());
    offers_.pop_front();
    if (adds)
        offer.add();
    // In a turn of its own: the window is still closing.
    if (!offers_.empty())
        QTimer::singleShot(0, window_.get(), [this] { showNext(); });
}

} // namespace quillmoth
