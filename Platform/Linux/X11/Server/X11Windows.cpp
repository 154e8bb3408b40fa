#include "Platform/Linux/X11/Server/X11Windows.h"

#include "Foundation/ASCII.h"
#include "Platform/Linux/X11/Server/X11Reply.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <xcb/res.h>

namespace quillmoth::platform {

namespace {

/// Beginnings of WM_CLASS names, in lower case.
constexpr std::string_view kInputMethodClasses[] = {
    "ibus", "fcitx", "scim", "uim",     "kimpanel", "nimf",  "kkc",
    "gcin", "hime",  "mozc", "onboard", "florence", "xvkbd", "matchbox-keyboard"};

} // namespace

std::optional<std::int64_t> clientProcessIdentifier(xcb_connection_t* connection, xcb_window_t window) {
    const xcb_res_client_id_spec_t wanted = {window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const auto cookie = xcb_res_query_client_ids(connection, 1, &wanted);
    const auto reply = owned(xcb_res_query_client_ids_reply(connection, cookie, nullptr));
    if (!reply)
        return std::nullopt;
    for (auto entry = xcb_res_query_client_ids_ids_iterator(reply.get()); entry.rem;
         xcb_res_client_id_value_next(&entry)) {
        if (xcb_res_client_id_value_value_length(entry.data) > 0)
            return *xcb_res_client_id_value_value(entry.data);
    }
    return std::nullopt;
}

std::optional<std::int64_t> windowProcessIdentifier(X11Connection& connection, xcb_window_t window) {
    const auto told = connection.numbers(window, "_NET_WM_PID");
    if (!told.empty() && told.front() != 0)
        return told.front();
    return clientProcessIdentifier(connection.get(), window);
}

xcb_window_t selectionOwner(xcb_connection_t* connection, xcb_atom_t selection) {
    const auto cookie = xcb_get_selection_owner(connection, selection);
    const auto reply = owned(xcb_get_selection_owner_reply(connection, cookie, nullptr));
    return reply ? reply->owner : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

xcb_window_t activeWindow(X11Connection& connection) {
    const auto values = connection.numbers(connection.root(), "_NET_ACTIVE_WINDOW");
    return values.empty() ? 0 : values.front();
}

std::vector<xcb_window_t> windowsUnderPointer(X11Connection& connection) {
    std::vector<xcb_window_t> chain;
    auto window = connection.root();
    while (window) {
        const auto cookie = xcb_query_pointer(connection.get(), window);
        const auto reply = owned(xcb_query_pointer_reply(connection.get(), cookie, nullptr));
        window = reply ? reply->child : 0;
        if (window)
            chain.push_back(window);
    }
    return chain;
}

bool belongsTo(X11Connection& connection, xcb_window_t window, xcb_window_t owner) {
    // A menu of a menu of a dialog; no more, for windows can name each other in a circle.
    constexpr int kMostSteps = 8;
    for (int step = 0; window != 0 && step < kMostSteps; ++step) {
        if (window == owner)
            return true;
        const auto next = connection.numbers(window, "WM_TRANSIENT_FOR");
        window = next.empty() ? 0 : next.front();
    }
    return false;
}

bool isPointed(X11Connection& connection, xcb_window_t owner) {
    const auto windows = windowsUnderPointer(connection);
    return std::any_of(windows.begin(), windows.end(),
                       [&](auto window) { return belongsTo(connection, window, owner); });
}

bool belongsToInputMethod(X11Connection& connection, xcb_window_t window) {
    // Two names, each ended by a zero byte.
    const auto names = lowercasedASCII(connection.bytes(window, "WM_CLASS"));
    const auto second = names.find('\0') + 1;
    return std::any_of(std::begin(kInputMethodClasses), std::end(kInputMethodClasses), [&](auto beginning) {
        return names.starts_with(beginning) || names.compare(second, beginning.size(), beginning) == 0;
    });
}

} // namespace quillmoth::platform
