#include "Platform/Linux/X11/Keys/X11PassiveGrab.h"

#include "Platform/Linux/X11/Server/X11Reply.h"

#include <xcb/xinput.h>

namespace quillmoth::platform {

namespace {

xcb_input_xi_passive_grab_device_cookie_t request(X11Connection& connection, xcb_keycode_t keycode,
                                                  std::span<const std::uint32_t> variants) {
    constexpr std::uint32_t kEvents = XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE;
    return xcb_input_xi_passive_grab_device(
        connection.get(), XCB_CURRENT_TIME, connection.root(), XCB_CURSOR_NONE, keycode,
        XCB_INPUT_DEVICE_ALL_MASTER, static_cast<std::uint16_t>(variants.size()), 1,
        XCB_INPUT_GRAB_TYPE_KEYCODE, XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_MODE_22_ASYNC,
        XCB_INPUT_GRAB_OWNER_NO_OWNER, &kEvents, variants.data());
}

} // namespace

bool grabKey(X11Connection& connection, xcb_keycode_t keycode, std::span<const std::uint32_t> variants) {
    const auto cookie = request(connection, keycode, variants);
    const auto reply = owned(xcb_input_xi_passive_grab_device_reply(connection.get(), cookie, nullptr));
    // The reply lists the variants that failed.
    return reply && reply->num_modifiers == 0;
}

void grabKeyUnchecked(X11Connection& connection, xcb_keycode_t keycode,
                      std::span<const std::uint32_t> variants) {
    xcb_discard_reply(connection.get(), request(connection, keycode, variants).sequence);
}

void ungrabKey(X11Connection& connection, xcb_keycode_t keycode, std::span<const std::uint32_t> variants) {
    xcb_input_xi_passive_ungrab_device(
        connection.get(), connection.root(), keycode, XCB_INPUT_DEVICE_ALL_MASTER,
        static_cast<std::uint16_t>(variants.size()), XCB_INPUT_GRAB_TYPE_KEYCODE, variants.data());
}

} // namespace quillmoth::platform
