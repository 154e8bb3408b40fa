#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct xcb_connection_t;

namespace quillmoth::test {

struct DesktopRectangle {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// What stands on the screen, as an onlooker of the X server sees it.
class DesktopWindows {
public:
    /// `connection` outlives the object.
    DesktopWindows(xcb_connection_t* connection, std::uint32_t rootWindow);

    /// The window manager's active window; 0 for none.
    [[nodiscard]] std::uint32_t activeWindow() const;
    /// The window with the server's input focus.
    [[nodiscard]] std::uint32_t inputFocus() const;
    /// Windows that the window manager manages, in the order of their mapping.
    [[nodiscard]] std::vector<std::uint32_t> managedWindows() const;
    /// The first managed window whose title contains `title`.
    [[nodiscard]] std::optional<std::uint32_t> windowTitled(std::string_view title) const;
    [[nodiscard]] std::string title(std::uint32_t window) const;
    /// The process that set _NET_WM_PID; 0 for none.
    [[nodiscard]] std::uint32_t processIdentifier(std::uint32_t window) const;
    /// In the coordinates of the screen, without the window manager's frame.
    [[nodiscard]] DesktopRectangle geometry(std::uint32_t window) const;
    /// Asks the window manager to activate the window, as a task bar does.
    void activate(std::uint32_t window);

private:
    [[nodiscard]] std::vector<std::uint32_t> numbers(std::uint32_t window, const char* property) const;
    [[nodiscard]] std::uint32_t atom(const char* name) const;

    xcb_connection_t* connection_;
    std::uint32_t rootWindow_;
};

} // namespace quillmoth::test
