#include "Quillmoth/Shell/Editor/PresetForm.h"

#include "Quillmoth/Shell/Editor/EmojiPicker.h"
#include "Quillmoth/Shell/Controls/TextArea.h"
#include "Quillmoth/Shell/Editor/PresetFields.h"
#include "Quillmoth/Shell/Looks/Palette.h"
#include "Quillmoth/Shell/Looks/ThinScrollBar.h"

#include <QButtonGroup>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <limits>

namespace quillmoth {

namespace {

constexpr QMargins kFormPadding{26, 22, 26, 22};
constexpr int kFormGap = 12;
constexpr int kLabelGap = 10;
constexpr int kEmojiWidth = 64;
constexpr int kCaptionSize = 11;
constexpr int kCaptionAbove = 4;
constexpr int kCaptionBelow = 6;
constexpr int kSystemPromptHeight = 100;
constexpr int kPromptHeight = 150;
constexpr int kTypeGap = 18;
// Free below the buttons, and the first to go when the window gets low.
constexpr int kFreeBelow = 110;

QLabel* makeLabel(const QString& text, QWidget& field) {
    auto* label = new QLabel(text);
    label->setBuddy(&field);
    field.setAccessibleName(text);
    return label;
}

/// A push button with red text; the red is that of the palette in use.
class RedButton final : public QPushButton {
public:
    using QPushButton::QPushButton;

protected:
    void changeEvent(QEvent* event) override {
        QPushButton::changeEvent(event);
        const QColor red = windowTheme(palette()).red;
        if (event->type() != QEvent::PaletteChange || palette().color(QPalette::ButtonText) == red)
            return;
        QPalette changed;
        changed.setColor(QPalette::ButtonText, red);
        setPalette(changed);
    }
};

} // namespace

PresetForm::PresetForm(PromptEditorView& view, std::function<void()> changed)
    : view_(view), changed_(std::move(changed)), name_(new QLineEdit), emoji_(new EmojiField),
      systemPrompt_(new TextArea(kSystemPromptHeight)), prompt_(new TextArea(kPromptHeight)),
      types_(new QButtonGroup(this)), delete_(new RedButton("Delete")),
      addSelectedText_(new QPushButton("Add Selected Text")) {
    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(kFormPadding);
    layout->setSpacing(kFormGap);
    makeFields(*layout);
    addTextArea(*layout, *systemPrompt_, "System Prompt", kSystemPromptHeight);
    addTextArea(*layout, *prompt_, "Prompt", kPromptHeight);
    makeTypes(*layout);
    makeButtons(*layout);
    layout->addSpacerItem(
        new QSpacerItem(0, kFreeBelow - kFormGap, QSizePolicy::Minimum, QSizePolicy::Maximum));
    // A field refuses all typing where its text is at the limit, and would drop what is beyond it.
    for (QLineEdit* field : {name_, static_cast<QLineEdit*>(emoji_)})
        field->setMaxLength(std::numeric_limits<int>::max());
    connectField(*name_, &EditorView::setName);
    connectField(*emoji_, &EditorView::setEmoji);
    connectArea(*systemPrompt_, &EditorView::setSystemPrompt);
    connectArea(*prompt_, &EditorView::setPrompt);
    setWidget(content);
    setWidgetResizable(true);
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setVerticalScrollBar(new ThinScrollBar(ThinScrollBar::Place::window));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void PresetForm::makeFields(QVBoxLayout& layout) {
    emoji_->setFixedWidth(kEmojiWidth);
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(kLabelGap);
    grid->setVerticalSpacing(kFormGap);
    grid->addWidget(makeLabel("Name", *name_), 0, 0, Qt::AlignRight | Qt::AlignVCenter);
    grid->addWidget(name_, 0, 1);
    grid->addWidget(makeLabel("Emoji", *emoji_), 1, 0, Qt::AlignRight | Qt::AlignVCenter);
    auto* choose = new QPushButton("Choose…");
    choose->setAccessibleName("Choose emoji");
    connect(choose, &QPushButton::clicked, this, [this, choose] {
        EmojiPicker::open(*choose, emoji_->text(), [this](const QString& emoji) { emoji_->setText(emoji); });
    });
    auto* emojiLine = new QHBoxLayout;
    emojiLine->setSpacing(kLabelGap);
    emojiLine->addWidget(emoji_);
    emojiLine->addWidget(choose);
    emojiLine->addStretch();
    grid->addLayout(emojiLine, 1, 1);
    layout.addLayout(grid);
}

void PresetForm::addTextArea(QVBoxLayout& layout, TextArea& area, const QString& caption, int height) {
    QLabel* label = makeLabel(caption, area);
    QFont font = label->font();
    font.setPixelSize(kCaptionSize);
    font.setWeight(QFont::Medium);
    label->setFont(font);
    auto* group = new QVBoxLayout;
    group->setContentsMargins(0, kCaptionAbove, 0, 0);
    group->setSpacing(kCaptionBelow);
    group->addWidget(label);
    group->addWidget(&area, 1);
    layout.addLayout(group, height);
}

void PresetForm::makeTypes(QVBoxLayout& layout) {
    auto* line = new QHBoxLayout;
    line->setSpacing(kTypeGap);
    line->addWidget(new QLabel("Use Selected text"));
    for (const auto& [text, type] :
         {std::pair("Context", EditorView::kContext), std::pair("Non - Context", EditorView::kNonContext)}) {
        auto* choice = new ChoiceButton(text);
        choice->setAccessibleDescription("Use Selected text");
        choice->setProperty("type", type);
        types_->addButton(choice);
        line->addWidget(choice);
        // Not the click: assistive technology chooses without one.
        connect(choice, &ChoiceButton::toggled, this, [this, value = std::string(type)](bool isOn) {
            if (isOn && !isShowingType_)
                edit([&](EditorView& form) { form.setPromptType(value); });
        });
    }
    line->addStretch();
    layout.addLayout(line);
}

void PresetForm::makeButtons(QVBoxLayout& layout) {
    auto* line = new QHBoxLayout;
    line->setSpacing(kLabelGap);
    line->addWidget(delete_);
    line->addWidget(addSelectedText_);
    line->addStretch();
    layout.addLayout(line);
    connect(delete_, &QPushButton::clicked, this, [this] {
        view_.deletePreset();
        changed_();
    });
    connect(addSelectedText_, &QPushButton::clicked, this,
            [this] { edit([](EditorView& form) { form.addSelectedText(); }); });
}

void PresetForm::connectField(QLineEdit& field, TextSetter setter) {
    connect(&field, &QLineEdit::textChanged, this, [this, &field, setter] {
        edit([&](EditorView& form) { (form.*setter)(field.text().toStdString()); });
    });
}

void PresetForm::connectArea(TextArea& area, TextSetter setter) {
    connect(&area, &TextArea::textChanged, this, [this, &area, setter] {
        // The signal also comes when an input method begins to compose, which is not typing yet.
        if (area.takeTextChange())
            edit([&](EditorView& form) { (form.*setter)(area.text().toStdString()); });
    });
}

void PresetForm::edit(const std::function<void(EditorView&)>& change) {
    std::optional<EditorView> form = view_.editor();
    if (!form)
        return;
    change(*form);
    changed_();
}

bool PresetForm::isOtherPreset(const EditorView& form) {
    const bool isOther = shownIndex_ != form.PromptIndex || shownArrangement_ != view_.arrangement();
    shownIndex_ = form.PromptIndex;
    shownArrangement_ = view_.arrangement();
    return isOther;
}

void PresetForm::refresh() {
    const std::optional<EditorView> form = view_.editor();
    if (!form)
        return;
    const PromptData& preset = form->preset();
    const bool isFresh = isOtherPreset(*form);
    showText(*name_, QString::fromStdString(preset.name), isFresh);
    showText(*emoji_, QString::fromStdString(preset.emoji), isFresh);
    emoji_->chooseFont();
    systemPrompt_->showText(QString::fromStdString(form->shownSystemPrompt()), isFresh);
    prompt_->showText(QString::fromStdString(preset.prompt), isFresh);
    showType(form->shownPromptType());
    addSelectedText_->setVisible(form->offersSelectedText());
}

void PresetForm::showType(const std::string& type) {
    // A kind that is neither of the two leaves both unmarked, which an exclusive group would not allow.
    isShowingType_ = true;
    types_->setExclusive(false);
    for (QAbstractButton* choice : types_->buttons())
        choice->setChecked(choice->property("type").toString().toStdString() == type);
    types_->setExclusive(true);
    isShowingType_ = false;
}

QSize PresetForm::minimumSizeHint() const {
    return {widget()->minimumSizeHint().width() + ThinScrollBar::kWidth,
            QScrollArea::minimumSizeHint().height()};
}

void PresetForm::focusName() {
    ensureWidgetVisible(name_);
    name_->setFocus(Qt::OtherFocusReason);
    name_->selectAll();
}

} // namespace quillmoth
