#include "Platform/Linux/X11/Server/X11Screen.h"

#include "Platform/Linux/X11/Server/X11Reply.h"
#include "Platform/Linux/X11/Server/X11Windows.h"

#include <utility>
#include <xcb/xfixes.h>

namespace quillmoth::platform {

X11Screen::X11Screen(X11Connection& connection)
    : connection_(connection), selection_(connection.atom("_NET_WM_CM_S0")), isComposited_(hasCompositor()) {
    const auto* fixes = xcb_get_extension_data(connection_.get(), &xcb_xfixes_id);
    if (!fixes->present)
        return;
    selectionEvent_ = static_cast<std::uint8_t>(fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY);
    // Without being asked for a version the extension answers nothing.
    const auto cookie = xcb_xfixes_query_version(connection_.get(), 2, 0);
    owned(xcb_xfixes_query_version_reply(connection_.get(), cookie, nullptr)).reset();
    events_ = connection_.onEvent([this](const xcb_generic_event_t& event) { handle(event); });
    xcb_xfixes_select_selection_input(connection_.get(), connection_.root(), selection_,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    xcb_flush(connection_.get());
}

bool X11Screen::hasCompositor() const {
    return selectionOwner(connection_.get(), selection_) != XCB_WINDOW_NONE;
}

void X11Screen::handle(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7F) != selectionEvent_)
        return;
    const bool now = hasCompositor();
    if (std::exchange(isComposited_, now) != now)
        changed_.emit(now);
}

} // namespace quillmoth::platform
