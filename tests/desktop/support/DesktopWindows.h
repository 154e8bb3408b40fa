#pragma once

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct xcb_connection_t;

namespace quillmoth::test {

/// What the X server has answered; null where it could not.
template<class Reply>
std::unique_ptr<Reply, decltype(&std::free)> ownedReply(Reply* reply) {
    return {reply, &std::free};
}

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
    /// The mapped window of this title, also where no window manager manages it; 0 for none.
    [[nodiscard]] std::uint32_t visibleWindowTitled(std::string_view title) const;
    /// The mapped window of this process that no window manager manages, such as an open menu; 0 for none.
    [[nodiscard]] std::uint32_t visiblePopupOf(std::uint32_t process) const;
    [[nodiscard]] std::string title(std::uint32_t window) const;
    /// The process that set _NET_WM_PID; 0 for none.
    [[nodiscard]] std::uint32_t processIdentifier(std::uint32_t window) const;
    /// In the coordinates of the screen, without the window manager's frame.
    [[nodiscard]] DesktopRectangle geometry(std::uint32_t window) const;
    [[nodiscard]] std::uint32_t atom(const char* name) const;

private:
    using Condition = std::function<bool(std::uint32_t window, bool isManaged)>;
    /// The first mapped window on top of the root that fits.
    [[nodiscard]] std::uint32_t visibleWindow(const Condition& fits) const;
    [[nodiscard]] std::vector<std::uint32_t> numbers(std::uint32_t window, const char* property) const;

    xcb_connection_t* connection_;
    std::uint32_t rootWindow_;
};

} // namespace quillmoth::test
