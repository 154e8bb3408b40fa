#pragma once

#include "tests/desktop/support/ChildProcess.h"
#include "tests/desktop/support/DesktopWindows.h"
#include "tests/desktop/wayland/WlrootsInput.h"

#include <nlohmann/json.hpp>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillmoth::test {

/// A session of sway without a screen, as an ordinary user where this process is root. Home, session bus and
/// accessibility bus are those of a VirtualDesktop, which is made before and outlives it; its X server counts
/// no more. The environment of this process points to sway then. Throws std::runtime_error where it does not
/// come up.
class SwaySession {
public:
    static constexpr int kWidth = 1280;
    static constexpr int kHeight = 800;

    SwaySession();
    ~SwaySession();
    SwaySession(const SwaySession&) = delete;
    SwaySession& operator=(const SwaySession&) = delete;

    WaylandInput& input() { return *input_; }

    /// Appends a line to the configuration, and has it read again.
    void configure(const std::string& line);
    void command(const std::string& text) const;

    /// The outputs take up a rectangle of that size, from the left upper corner of the first one on.
    void useExtent(int width, int height) { input_ = std::make_unique<WlrootsInput>(width, height); }

    [[nodiscard]] static bool hasWindows();
    /// The window with the focus: its app_id or class; empty for none.
    [[nodiscard]] static std::string front();
    /// None where no window has the focus.
    [[nodiscard]] static std::optional<std::string> frontTitle();
    [[nodiscard]] static DesktopRectangle frontRectangle();
    /// The marks of the windows, put together.
    [[nodiscard]] static std::string marks();
    /// Of the X server beside the session, as in the variable DISPLAY. It is asked for again for each
    /// program, since the server ends with the last of them.
    [[nodiscard]] std::string display() const;
    /// What a user would paste. With `isPrimary`, with the middle button.
    [[nodiscard]] static std::string clipboard(bool isPrimary = false,
                                               const std::string& mediaType = "text/plain");

    /// Writes a picture of the screen, or of one output, as PNG.
    static void saveScreenshot(const std::string& path, const std::string& output = {});

private:
    [[nodiscard]] static nlohmann::json ask(const std::string& question);
    /// The leaves of the tree of windows.
    [[nodiscard]] static std::vector<nlohmann::json> leaves();
    [[nodiscard]] static nlohmann::json focused();

    std::string directory_;
    std::optional<ChildProcess> sway_;
    std::unique_ptr<WlrootsInput> input_;
};

} // namespace quillmoth::test
