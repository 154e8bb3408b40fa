#include "Platform/Linux/X11/Keys/X11HotKeyProbe.h"

#include "Platform/Linux/Shared/Keycodes.h"
#include "Platform/Linux/X11/Keys/X11Modifiers.h"
#include "Platform/Linux/X11/Keys/X11PassiveGrab.h"
#include "Platform/Linux/X11/Server/X11Reply.h"

namespace quillmoth::platform {

bool X11HotKeyProbe::hasCoreGrab(xcb_keycode_t keycode, std::uint32_t modifiers) const {
    auto* connection = connection_.get();
    const auto mask = static_cast<std::uint16_t>(modifiers);
    const auto cookie = xcb_grab_key_checked(connection, 0, connection_.root(), mask, keycode,
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    // BadAccess: another client has it.
    if (owned(xcb_request_check(connection, cookie)))
        return true;
    xcb_ungrab_key(connection, keycode, connection_.root(), mask);
    xcb_flush(connection);
    return false;
}

bool X11HotKeyProbe::isGrabbed(xcb_keycode_t keycode, std::uint32_t modifiers) const {
    if (hasCoreGrab(keycode, modifiers))
        return true;
    const std::uint32_t variants[] = {modifiers};
    const bool isFree = grabKey(connection_, keycode, variants);
    if (isFree)
        ungrabKey(connection_, keycode, variants);
    xcb_flush(connection_.get());
    return !isFree;
}

bool X11HotKeyProbe::isShortcutTaken(std::uint32_t keyCode, std::uint32_t carbonModifiers) const {
    const auto keycode = keycodeForVirtualKeyCode(keyCode);
    return keycode && hasCoreGrab(*keycode, modifiersForCarbon(carbonModifiers));
}

std::string X11HotKeyProbe::windowManagerName() const {
    const auto window = connection_.numbers(connection_.root(), "_NET_SUPPORTING_WM_CHECK");
    return window.empty() ? std::string() : connection_.bytes(window.front(), "_NET_WM_NAME");
}

} // namespace quillmoth::platform
