#include "tests/desktop/support/DesktopWindows.h"

#include <cstring>
#include <xcb/xcb.h>

namespace quillmoth::test {

namespace {

std::string property(xcb_connection_t* connection, std::uint32_t window, std::uint32_t name) {
    const auto cookie = xcb_get_property(connection, 0, window, name, XCB_ATOM_ANY, 0, 65536);
    const auto reply = ownedReply(xcb_get_property_reply(connection, cookie, nullptr));
    if (!reply)
        return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

} // namespace

DesktopWindows::DesktopWindows(xcb_connection_t* connection, std::uint32_t rootWindow)
    : connection_(connection), rootWindow_(rootWindow) {}

std::uint32_t DesktopWindows::atom(const char* name) const {
    const auto cookie = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const auto reply = ownedReply(xcb_intern_atom_reply(connection_, cookie, nullptr));
    return reply ? reply->atom : 0;
}

std::vector<std::uint32_t> DesktopWindows::numbers(std::uint32_t window, const char* name) const {
    const std::string bytes = property(connection_, window, atom(name));
    std::vector<std::uint32_t> result(bytes.size() / sizeof(std::uint32_t));
    if (!result.empty())
        std::memcpy(result.data(), bytes.data(), result.size() * sizeof(std::uint32_t));
    return result;
}

std::uint32_t DesktopWindows::activeWindow() const {
    const auto values = numbers(rootWindow_, "_NET_ACTIVE_WINDOW");
    return values.empty() ? 0 : values.front();
}

std::uint32_t DesktopWindows::inputFocus() const {
    const auto reply =
        ownedReply(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    return reply ? reply->focus : 0;
}

std::vector<std::uint32_t> DesktopWindows::managedWindows() const {
    return numbers(rootWindow_, "_NET_CLIENT_LIST");
}

std::optional<std::uint32_t> DesktopWindows::windowTitled(std::string_view wanted) const {
    for (const auto window : managedWindows()) {
        if (title(window).find(wanted) != std::string::npos)
            return window;
    }
    return std::nullopt;
}

std::uint32_t DesktopWindows::visibleWindow(const Condition& fits) const {
    const auto tree =
        ownedReply(xcb_query_tree_reply(connection_, xcb_query_tree(connection_, rootWindow_), nullptr));
    for (int i = 0; tree && i < xcb_query_tree_children_length(tree.get()); ++i) {
        const xcb_window_t window = xcb_query_tree_children(tree.get())[i];
        const auto attributes = ownedReply(xcb_get_window_attributes_reply(
            connection_, xcb_get_window_attributes(connection_, window), nullptr));
        if (attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
            fits(window, attributes->override_redirect == 0))
            return window;
    }
    return 0;
}

std::uint32_t DesktopWindows::visibleWindowTitled(std::string_view wanted) const {
    return visibleWindow([&](std::uint32_t window, bool) { return title(window) == wanted; });
}

std::uint32_t DesktopWindows::visiblePopupOf(std::uint32_t process) const {
    return visibleWindow([&](std::uint32_t window, bool isManaged) {
        return !isManaged && processIdentifier(window) == process;
    });
}

std::string DesktopWindows::title(std::uint32_t window) const {
    auto text = property(connection_, window, atom("_NET_WM_NAME"));
    return text.empty() ? property(connection_, window, XCB_ATOM_WM_NAME) : text;
}

std::uint32_t DesktopWindows::processIdentifier(std::uint32_t window) const {
    const auto values = numbers(window, "_NET_WM_PID");
    return values.empty() ? 0 : values.front();
}

DesktopRectangle DesktopWindows::geometry(std::uint32_t window) const {
    const auto size =
        ownedReply(xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
    const auto place = ownedReply(xcb_translate_coordinates_reply(
        connection_, xcb_translate_coordinates(connection_, window, rootWindow_, 0, 0), nullptr));
    if (!size || !place)
        return {};
    return {place->dst_x, place->dst_y, size->width, size->height};
}

} // namespace quillmoth::test
