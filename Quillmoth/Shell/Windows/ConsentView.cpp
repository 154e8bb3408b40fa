#include "Quillmoth/Shell/Windows/ConsentView.h"

#include "Quillmoth/Shell/Controls/Buttons.h"
#include "Quillmoth/Shell/Windows/OnboardingPage.h"

#include <QBoxLayout>
#include <QStringList>

#include <algorithm>
#include <utility>

namespace quillmoth {

namespace {

constexpr int kButtonGap = 14;
// There is room for three lines or so.
constexpr std::size_t kMostNamed = 8;

QPushButton* makeButton(const QString& text, RoundedRectangleButtonStyle::Fill fill) {
    auto* button = new RoundedRectangleButtonStyle(text, fill);
    // Return presses the one that has the keyboard.
    button->setAutoDefault(true);
    return button;
}

QWidget* makePage(const std::vector<std::string>& programsToRestart) {
    return makeOnboardingPage(
        QStringLiteral("Switch on accessibility"), QStringLiteral("for this desktop?"),
        {new InformationDetailView(
             QStringLiteral("What It Is For"),
             QStringLiteral("Quillmoth reads the text that you select in other programs, and writes answers "
                            "back, through the desktop's accessibility service."),
             QStringLiteral("app.badge.checkmark")),
         new InformationDetailView(
             QStringLiteral("What Is Read"),
             QStringLiteral(
                 "Only what is selected when you press the hot key,\nand never what is in password fields."),
             QStringLiteral("hand.raised")),
         new InformationDetailView(QStringLiteral("What to Do Then"),
                                   restartAdvice(programsToRestart) +
                                       QStringLiteral("\nYou can change your answer in the settings."),
                                   QStringLiteral("clock"))});
}

} // namespace

QString restartAdvice(const std::vector<std::string>& programs) {
    if (programs.empty())
        return QStringLiteral("Programs that you start from then on notice it.");
    QStringList names;
    const std::size_t named = std::min(programs.size(), kMostNamed);
    for (std::size_t index = 0; index < named; ++index)
        names << QString::fromStdString(programs[index]);
    if (named < programs.size())
        names << QStringLiteral("and %1 more").arg(programs.size() - named);
    return QStringLiteral("Please restart afterwards, for they look for it only when they start: ") +
           names.join(QStringLiteral(", ")) + QLatin1Char('.');
}

ConsentView::ConsentView(const std::vector<std::string>& programsToRestart,
                         std::function<void(bool agreed)> answer)
    : refuse_(makeButton(QStringLiteral("Not Now"), RoundedRectangleButtonStyle::Fill::quiet)) {
    QPushButton* agree = makeButton(QStringLiteral("Switch On"), RoundedRectangleButtonStyle::Fill::indigo);
    connect(refuse_, &QPushButton::clicked, this, [answer] { answer(false); });
    connect(agree, &QPushButton::clicked, this, [answer = std::move(answer)] { answer(true); });
    auto* buttons = new QHBoxLayout;
    buttons->setContentsMargins(onboarding::kContinuePadding, 0, onboarding::kContinuePadding, 0);
    buttons->setSpacing(kButtonGap);
    buttons->addWidget(refuse_, 1);
    buttons->addWidget(agree, 1);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makePage(programsToRestart), 1);
    column->addLayout(buttons);
}

ConsentWindow::ConsentWindow(ColorScheme& colorScheme, const std::vector<std::string>& programsToRestart,
                             std::function<void(bool agreed)> answer)
    : ShellWindow(QStringLiteral("Accessibility"), colorScheme),
      view_(new ConsentView(programsToRestart, [this, answer = std::move(answer)](bool agreed) {
          close();
          answer(agreed);
      })) {
    // Not the window itself: the ring around a button reaches into the margin.
    auto* content = new QWidget;
    auto* padded = new QVBoxLayout(content);
    padded->setContentsMargins(onboarding::kPadding);
    padded->addWidget(view_);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(content);
    setFixedSize(onboarding::kWindow);
    applyLook();
}

void ConsentWindow::takeFirstFocus() {
    focusVisibly(view_->safeButton());
}

} // namespace quillmoth
