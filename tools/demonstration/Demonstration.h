#pragma once

#include "Report.h"
#include "tests/desktop/support/ProgramSession.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace quillmoth::test {

/// The program shown on a virtual desktop with an editor in front and a scripted server behind, with a
/// report of what was checked and pictures of it.
class Demonstration {
public:
    /// Puts the numbered pictures into the folder `output`; those of an earlier time go.
    Demonstration(std::string output, const std::string& windowManager);

    /// Runs `condition` again and again until it holds, and reports how long that took. What the program
    /// shows goes into the report where it does not hold in time.
    bool check(const std::string& what, const std::function<bool()>& condition,
               std::chrono::milliseconds deadline = std::chrono::seconds(10));
    void takePicture(const std::string& name);

    ProgramSession& session() { return session_; }

    DesktopInput& input() { return session_.input(); }

    FrontEditor& editor() { return session_.editor(); }

    Report& report() { return report_; }

    /// Whether the text is anywhere in what the program shows, its states included.
    [[nodiscard]] bool shows(const std::string& text) {
        return session_.shown().described().find(text) != std::string::npos;
    }

    [[nodiscard]] bool isOpen() const { return session_.panelWindow() != 0; }

private:
    std::string output_;
    ProgramSession session_;
    Report report_;
    int pictureCount_ = 0;
};

} // namespace quillmoth::test
