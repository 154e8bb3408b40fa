#include "tests/desktop/support/VisibleWindows.h"

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace quillmoth::test {

namespace {

template<class Reply>
std::unique_ptr<Reply, void (*)(void*)> ownedReply(Reply* reply) {
    return {reply, std::free};
}

using Attributes = xcb_get_window_attributes_reply_t;

/// The first window on top of the root that fits.
template<class Condition>
std::uint32_t findWindow(const VirtualDesktop& desktop, Condition&& fits) {
    xcb_connection_t* connection = desktop.connection();
    const auto tree = ownedReply(
        xcb_query_tree_reply(connection, xcb_query_tree(connection, desktop.rootWindow()), nullptr));
    if (!tree)
        return 0;
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        const auto attributes = ownedReply(xcb_get_window_attributes_reply(
            connection, xcb_get_window_attributes(connection, children[i]), nullptr));
        if (attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE && fits(children[i], *attributes))
            return children[i];
    }
    return 0;
}

} // namespace

std::uint32_t visibleWindowTitled(const VirtualDesktop& desktop, std::string_view title) {
    const DesktopWindows windows(desktop.connection(), desktop.rootWindow());
    return findWindow(desktop,
                      [&](xcb_window_t window, const Attributes&) { return windows.title(window) == title; });
}

std::uint32_t visiblePopupOf(const VirtualDesktop& desktop, std::uint32_t process) {
    const DesktopWindows windows(desktop.connection(), desktop.rootWindow());
    return findWindow(desktop, [&](xcb_window_t window, const Attributes& attributes) {
        return attributes.override_redirect != 0 && windows.processIdentifier(window) == process;
    });
}

} // namespace quillmoth::test
