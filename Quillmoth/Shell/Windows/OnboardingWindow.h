#pragma once

#include "Quillmoth/Shell/Windows/ShellWindow.h"

#include <functional>

class QStackedWidget;

namespace quillmoth {

/// The two pages that a new user sees: what the program is, then its keys. Main thread.
class OnboardingView final : public QWidget {
public:
    OnboardingView();

    [[nodiscard]] int page() const { return _page; }

    void setPage(int page);
    /// What the button does: the second page, then onFinished.
    void continuePressed();

    std::function<void()> onFinished;

private:
    int _page = 1;
    QStackedWidget* pages_;
};

/// Its window. Each opening starts at the first page.
class OnboardingWindow final : public ShellWindow {
public:
    /// `onFinished` is called after the last page has been left by its button and the window is closed.
    OnboardingWindow(ColorScheme& colorScheme, std::function<void()> onFinished);

    [[nodiscard]] OnboardingView& view() const { return *view_; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    OnboardingView* view_;
};

} // namespace quillmoth
