#pragma once

#include "Quillmoth/Shell/Controls/ShellWindow.h"
#include "Quillmoth/Shell/Windows/ConsentView.h"

#include <functional>

class QShortcut;
class QStackedWidget;

namespace quillmoth {

class RoundedRectangleButtonStyle;

/// The two pages that a new user sees: what the program is, then its keys. Where the question for
/// accessibility is open it is asked between them. Main thread.
class OnboardingView final : public QWidget {
public:
    explicit OnboardingView(ConsentQuestion question = {});

    [[nodiscard]] int page() const { return _page; }

    void setPage(int page);
    /// What the button does: the second page, then onFinished.
    void continuePressed();

    std::function<void()> onFinished;

private:
    void ask();
    void endQuestion();

    int _page = 1;
    ConsentQuestion question_;
    QStackedWidget* pages_;
    RoundedRectangleButtonStyle* continue_;
    QShortcut* return_;
    // While it is asked.
    ConsentView* consent_ = nullptr;
};

/// Its window. Each opening starts at the first page.
class OnboardingWindow final : public ShellWindow {
public:
    /// `onFinished` is called after the last page has been left by its button and the window is closed.
    OnboardingWindow(ColorScheme& colorScheme, std::function<void()> onFinished,
                     ConsentQuestion question = {});

    [[nodiscard]] OnboardingView& view() const { return *view_; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    OnboardingView* view_;
};

} // namespace quillmoth
