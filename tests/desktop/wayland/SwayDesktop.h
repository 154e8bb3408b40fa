#pragma once

#include "tests/desktop/support/ProgramSession.h"
#include "tests/desktop/wayland/WaylandInput.h"

#include <nlohmann/json.hpp>

#include <memory>
#include <optional>
#include <string>

namespace quillmoth::test {

/// A session of sway without a screen, with the program, its home and its chat server in it. The environment
/// of this process points there while the object lives. Throws std::runtime_error where it does not come up.
class SwayDesktop {
public:
    static constexpr int kWidth = 1280;
    static constexpr int kHeight = 800;

    SwayDesktop();
    ~SwayDesktop();
    SwayDesktop(const SwayDesktop&) = delete;
    SwayDesktop& operator=(const SwayDesktop&) = delete;

    ProgramSession& program() { return program_; }

    WaylandInput& input() { return *input_; }

    /// Appends a line to the configuration, and has it read again.
    void configure(const std::string& line);
    void command(const std::string& text) const;

    /// The window with the focus: its app_id or class; empty for none.
    [[nodiscard]] static std::string front();
    [[nodiscard]] static DesktopRectangle frontRectangle();
    /// The marks of the windows, put together.
    [[nodiscard]] static std::string marks();
    /// Of the X server beside the session, as in the variable DISPLAY.
    [[nodiscard]] std::string display() const;
    /// What a user would paste. With `isPrimary`, with the middle button.
    [[nodiscard]] static std::string clipboard(bool isPrimary = false);

    /// Writes a picture of the screen as PNG.
    static void saveScreenshot(const std::string& path);

private:
    [[nodiscard]] static nlohmann::json ask(const std::string& question);
    [[nodiscard]] static nlohmann::json focused();

    ProgramSession program_;
    std::string directory_;
    std::optional<ChildProcess> sway_;
    std::unique_ptr<WaylandInput> input_;
};

} // namespace quillmoth::test
