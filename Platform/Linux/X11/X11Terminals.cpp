#include "Platform/Linux/X11/X11Terminals.h"

#include "Platform/Linux/Shared/Terminals.h"
#include "Platform/Linux/X11/Server/X11Application.h"
#include "Platform/Linux/X11/Server/X11Reply.h"
#include "Platform/Linux/X11/Server/X11Windows.h"

#include <vector>

namespace quillmoth::platform {

namespace {

bool hasTerminalClass(X11Connection& connection, xcb_window_t window) {
    const X11ClassNames names = classNamesOf(connection, window);
    return isTerminalName(names.instance) || isTerminalName(names.classOfAll);
}

/// From the one with the input focus outwards.
std::vector<xcb_window_t> focusedWindows(X11Connection& connection) {
    auto* server = connection.get();
    const auto focus = owned(xcb_get_input_focus_reply(server, xcb_get_input_focus(server), nullptr));
    if (!focus || focus->focus == XCB_INPUT_FOCUS_NONE)
        return {};
    if (focus->focus == XCB_INPUT_FOCUS_POINTER_ROOT)
        return windowsUnderPointer(connection);
    std::vector<xcb_window_t> windows;
    for (auto window = focus->focus; window != 0 && window != connection.root();) {
        windows.push_back(window);
        const auto tree = owned(xcb_query_tree_reply(server, xcb_query_tree(server, window), nullptr));
        window = tree ? tree->parent : 0;
    }
    return windows;
}

} // namespace

std::optional<std::int64_t> terminalInFront(X11Connection& connection,
                                            const std::function<bool(std::int64_t process)>& hasOtherFocus) {
    auto windows = focusedWindows(connection);
    if (const auto active = activeWindow(connection); active != 0)
        windows.insert(windows.begin(), active);
    for (const auto window : windows) {
        if (hasTerminalClass(connection, window))
            return clientProcessIdentifier(connection.get(), window).value_or(0);
    }
    // The window manager's frame is among them too, but what it has in front stands before that.
    const auto process =
        windows.empty() ? std::nullopt : clientProcessIdentifier(connection.get(), windows.front());
    if (!process)
        return std::nullopt;
    return isTerminalProcess(*process, hasOtherFocus) ? process : std::nullopt;
}

} // namespace quillmoth::platform
