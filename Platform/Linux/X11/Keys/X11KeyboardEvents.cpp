#include "Platform/Linux/X11/Keys/X11KeyboardEvents.h"

#include "Platform/Linux/X11/Keys/X11Keycodes.h"
#include "Platform/Linux/X11/Server/X11Reply.h"
#include "Platform/Linux/X11/Server/XkbProtocol.h"

#include <algorithm>
#include <linux/input-event-codes.h>
#include <optional>
#include <utility>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace quillmoth::platform {

namespace {

constexpr xcb_keycode_t kLeftControl = KEY_LEFTCTRL + 8;
constexpr xcb_keycode_t kRightControl = KEY_RIGHTCTRL + 8;
constexpr xcb_keycode_t kUsualV = KEY_V + 8;

bool isControl(xcb_keycode_t keycode) {
    return keycode == kLeftControl || keycode == kRightControl;
}

/// The key that writes `keysym` without modifiers in the layout in force, or else in another one of the
/// user's.
std::optional<xcb_keycode_t> keycodeWriting(xcb_connection_t* connection, xcb_keysym_t keysym) {
    const auto stateCookie = xcb_xkb_get_state(connection, XCB_XKB_ID_USE_CORE_KBD);
    const auto* setup = xcb_get_setup(connection);
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto cookie = xcb_get_keyboard_mapping(connection, setup->min_keycode, count);
    const auto state = owned(xcb_xkb_get_state_reply(connection, stateCookie, nullptr));
    const auto map = owned(xcb_get_keyboard_mapping_reply(connection, cookie, nullptr));
    if (!map)
        return std::nullopt;
    const auto* keysyms = xcb_get_keyboard_mapping_keysyms(map.get());
    const unsigned width = map->keysyms_per_keycode;
    // Two columns for each of the first two layouts.
    const unsigned first = state && state->group == 1 ? 2 : 0;
    for (const unsigned column : {first, 2 - first}) {
        for (unsigned key = 0; column < width && key < count; ++key) {
            if (keysyms[key * width + column] == keysym)
                return static_cast<xcb_keycode_t>(setup->min_keycode + key);
        }
    }
    return std::nullopt;
}

} // namespace

X11KeyboardEvents::X11KeyboardEvents(X11Connection& connection, Bracket withoutGrab)
    : connection_(connection), withoutGrab_(std::move(withoutGrab)) {}

std::optional<CGKeyboardEvent> X11KeyboardEvents::createKeyboardEvent(std::uint16_t keyCode, bool keyDown) {
    if (!connection_.takesKeys() || !keycodeForVirtualKeyCode(keyCode))
        return std::nullopt;
    return CGKeyboardEvent{keyCode, keyDown, 0};
}

void X11KeyboardEvents::post(const CGKeyboardEvent& event) {
    const auto keycode = keycodeForVirtualKeyCode(event.keyCode);
    const bool isForbidden = isForbidden_ && event.flags != 0 && event.keyDown && isForbidden_();
    if (!keycode || isForbidden)
        return;
    withoutGrab_([&] {
        if (event.keyDown)
            press(*keycode, event.flags);
        else
            release(*keycode);
        connection_.synchronize();
    });
}

void X11KeyboardEvents::postPaste() {
    const xcb_keycode_t keycode = keycodeWriting(connection_.get(), XKB_KEY_v).value_or(kUsualV);
    withoutGrab_([&] {
        press(keycode, keys::kFlagCommand);
        release(keycode);
        connection_.synchronize();
    });
}

void X11KeyboardEvents::press(xcb_keycode_t keycode, keys::ModifierFlags flags) {
    const bool wantsControl = (flags & keys::kFlagCommand) != 0;
    auto held = keysDown(connection_, X11Modifiers(connection_).heldKeys());
    const bool holdsControl = std::any_of(held.begin(), held.end(), isControl);
    if (wantsControl)
        std::erase_if(held, isControl);
    pressedControl_ = wantsControl && !holdsControl;
    // Control goes down first: a lone release of Alt or Super would open a menu.
    if (pressedControl_)
        fake(XCB_KEY_PRESS, kLeftControl);
    for (const auto modifier : held)
        fake(XCB_KEY_RELEASE, modifier);
    released_ = std::move(held);
    fake(XCB_KEY_PRESS, keycode);
}

void X11KeyboardEvents::release(xcb_keycode_t keycode) {
    fake(XCB_KEY_RELEASE, keycode);
    for (const auto modifier : std::exchange(released_, {}))
        fake(XCB_KEY_PRESS, modifier);
    if (std::exchange(pressedControl_, false))
        fake(XCB_KEY_RELEASE, kLeftControl);
}

void X11KeyboardEvents::fake(std::uint8_t type, xcb_keycode_t keycode) {
    connection_.strike(type, keycode);
}

} // namespace quillmoth::platform
