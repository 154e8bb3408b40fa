#pragma once

#include "Quillmoth/Shell/Controls/ShellWindow.h"

#include <functional>
#include <string>
#include <vector>

class QPushButton;

namespace quillmoth {

/// The question whether accessibility may be switched on for the desktop.
struct ConsentQuestion {
    /// Whether there is something to ask.
    std::function<bool()> isOpen;
    /// Those running now that have to be restarted after a yes.
    std::function<std::vector<std::string>()> programsToRestart;
    std::function<void(bool agreed)> answer;
};

/// What the user has to restart after a yes, in words.
[[nodiscard]] QString restartAdvice(const std::vector<std::string>& programs);

/// The question as a page in the look of the onboarding. Main thread.
class ConsentView final : public QWidget {
public:
    /// `answer` is called with each press of a button.
    ConsentView(const std::vector<std::string>& programsToRestart, std::function<void(bool agreed)> answer);

    /// What the keyboard belongs to first, so that Return gives nothing away.
    [[nodiscard]] QPushButton& safeButton() const { return *refuse_; }

private:
    QPushButton* refuse_;
};

/// The same in a window of its own, for a start without the onboarding. It closes with the answer; closed
/// without one it leaves the question open.
class ConsentWindow final : public ShellWindow {
public:
    ConsentWindow(ColorScheme& colorScheme, const std::vector<std::string>& programsToRestart,
                  std::function<void(bool agreed)> answer);

protected:
    void takeFirstFocus() override;

private:
    ConsentView* view_;
};

} // namespace quillmoth
