#include "Quillmoth/Shell/Windows/OnboardingWindow.h"

#include "Quillmoth/Shell/Controls/Buttons.h"
#include "Quillmoth/Shell/Looks/OwnKeys.h"
#include "Quillmoth/Shell/Windows/OnboardingPage.h"

#include <QBoxLayout>
#include <QShortcut>
#include <QShowEvent>
#include <QStackedWidget>

#include <utility>

namespace quillmoth {

namespace {

const auto kProgram = QStringLiteral("Quillmoth 🧙🏻♂️");

QWidget* makeFirstPage() {
    return makeOnboardingPage(
        QStringLiteral("Welcome to"), kProgram,
        {new InformationDetailView(
             QStringLiteral("Any App"),
             QStringLiteral("The only AI app you need. Use ChatGPT in any app.\n"
                            "Hit Option + Space to open Quillmoth (You can set this in the settings)."),
             QStringLiteral("app.badge.checkmark")),
         new InformationDetailView(
             QStringLiteral("Privacy"),
             QStringLiteral("Quillmoth places a high value on your privacy.\n"
                            "When this app is running, and you are using your own API key,\n"
                            "it will only connect to the OpenAI server."),
             QStringLiteral("hand.raised")),
         new InformationDetailView(QStringLiteral("History"),
                                   QStringLiteral("All of your chat history is saved locally."),
                                   QStringLiteral("clock"))});
}

QWidget* makeSecondPage() {
    const auto command = QStringLiteral("command.square.fill");
    return makeOnboardingPage(
        kProgram, QStringLiteral("Shortcuts"),
        {new InformationDetailView2(QStringLiteral("Copy All"),
                                    QStringLiteral("Copy all of the latest response."), command,
                                    QStringLiteral("shift.fill"), QStringLiteral("c.square.fill")),
         new InformationDetailView2(
             QStringLiteral("Resend the Last Prompt"),
             QStringLiteral("Don't like the answer? Let the AI generate the response again!"), command,
             QStringLiteral("r.square.fill"), onboarding::kNoImage),
         new InformationDetailView2(
             QStringLiteral("Toggle Markdown"),
             QStringLiteral(
                 "Quillmoth has a Markdown preview, but some users prefer reading raw Markdown for "
                 "the ability to select and drag across the whole response."),
             command, QStringLiteral("m.square.fill"), onboarding::kNoImage),
         new InformationDetailView2(
             QStringLiteral("Open History"),
             QStringLiteral("Revise your old chat history, or continue from where you left off."), command,
             QStringLiteral("h.square.fill"), onboarding::kNoImage)});
}

} // namespace

OnboardingView::OnboardingView(ConsentQuestion question)
    : question_(std::move(question)), pages_(new QStackedWidget),
      continue_(new RoundedRectangleButtonStyle(QStringLiteral("Continue"))),
      return_(new QShortcut(ownKeySequence(OwnKey::continueWelcome), this)) {
    pages_->addWidget(makeFirstPage());
    pages_->addWidget(makeSecondPage());
    connect(continue_, &QPushButton::clicked, this, [this] { continuePressed(); });
    connect(return_, &QShortcut::activated, continue_, [this] { continue_->click(); });
    auto* buttonRow = new QHBoxLayout;
    buttonRow->setContentsMargins(onboarding::kContinuePadding, 0, onboarding::kContinuePadding, 0);
    buttonRow->addWidget(continue_);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(onboarding::kPadding);
    column->setSpacing(0);
    column->addWidget(pages_, 1);
    column->addLayout(buttonRow);
}

void OnboardingView::setPage(int page) {
    _page = page;
    endQuestion();
    if (page == 2 && question_.isOpen && question_.isOpen())
        ask();
    else
        pages_->setCurrentIndex(page - 1);
}

void OnboardingView::ask() {
    consent_ = new ConsentView(question_.programsToRestart(), [this](bool agreed) {
        endQuestion();
        pages_->setCurrentIndex(_page - 1);
        question_.answer(agreed);
    });
    continue_->hide();
    return_->setEnabled(false);
    pages_->addWidget(consent_);
    pages_->setCurrentWidget(consent_);
    if (auto* shell = dynamic_cast<ShellWindow*>(window()))
        shell->focusVisibly(consent_->safeButton());
}

void OnboardingView::endQuestion() {
    if (consent_ == nullptr)
        return;
    pages_->removeWidget(consent_);
    consent_->hide();
    // Its own button may be what has called.
    consent_->deleteLater();
    consent_ = nullptr;
    continue_->show();
    return_->setEnabled(true);
    window()->setFocus(Qt::OtherFocusReason);
}

void OnboardingView::continuePressed() {
    if (_page == 1)
        setPage(2);
    else if (onFinished)
        onFinished();
}

OnboardingWindow::OnboardingWindow(ColorScheme& colorScheme, std::function<void()> onFinished,
                                   ConsentQuestion question)
    : ShellWindow(QStringLiteral("Onboarding"), colorScheme), view_(new OnboardingView(std::move(question))) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(view_);
    setFixedSize(onboarding::kWindow);
    applyLook();
    view_->onFinished = [this, onFinished = std::move(onFinished)] {
        close();
        onFinished();
    };
}

void OnboardingWindow::showEvent(QShowEvent* event) {
    if (!event->spontaneous())
        view_->setPage(1);
    ShellWindow::showEvent(event);
}

} // namespace quillmoth
