#include "Platform/Linux/X11/X11KeyboardEvents.h"

#include "Platform/Linux/X11/X11Keycodes.h"

#include <algorithm>
#include <utility>
#include <xcb/xtest.h>

namespace quillmoth::platform {

namespace {

constexpr xcb_keycode_t kLeftControl = 29 + 8;
constexpr xcb_keycode_t kRightControl = 97 + 8;

bool isControl(xcb_keycode_t keycode) {
    return keycode == kLeftControl || keycode == kRightControl;
}

class XTestEventSource : public CGEventSource {};

} // namespace

X11KeyboardEvents::X11KeyboardEvents(X11Connection& connection, Bracket withoutGrab)
    : connection_(connection), withoutGrab_(std::move(withoutGrab)) {}

std::shared_ptr<CGEventSource> X11KeyboardEvents::createSource(std::uint32_t) {
    return std::make_shared<XTestEventSource>();
}

std::unique_ptr<CGKeyboardEvent>
X11KeyboardEvents::createKeyboardEvent(const std::shared_ptr<CGEventSource>& source, std::uint16_t keyCode,
                                       bool keyDown) {
    const auto* test = xcb_get_extension_data(connection_.get(), &xcb_test_id);
    if (!source || !test->present || !keycodeForVirtualKeyCode(keyCode))
        return nullptr;
    return std::make_unique<CGKeyboardEvent>(CGKeyboardEvent{keyCode, keyDown, 0});
}

void X11KeyboardEvents::post(std::uint32_t, const CGKeyboardEvent& event) {
    const auto keycode = keycodeForVirtualKeyCode(event.keyCode);
    if (!keycode)
        return;
    withoutGrab_([&] {
        if (event.keyDown)
            press(*keycode, event.flags);
        else
            release(*keycode);
        connection_.synchronize();
    });
}

void X11KeyboardEvents::press(xcb_keycode_t keycode, std::uint64_t flags) {
    const bool wantsControl = (flags & kCGEventFlagMaskCommand) != 0;
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
    xcb_test_fake_input(connection_.get(), type, keycode, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
}

} // namespace quillmoth::platform
