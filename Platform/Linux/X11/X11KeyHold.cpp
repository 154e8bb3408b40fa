#include "Platform/Linux/X11/X11KeyHold.h"

#include <chrono>
#include <utility>
#include <xcb/xinput.h>

namespace quillmoth::platform {

namespace {

constexpr std::chrono::milliseconds kGuardPause(500);

/// The first pair of master devices has these numbers on every server.
constexpr std::uint16_t kCoreKeyboard = 3;

} // namespace

X11KeyHold::X11KeyHold(X11Connection& connection) : connection_(connection) {
    guardTimer_.setInterval(kGuardPause);
    QObject::connect(&guardTimer_, &QTimer::timeout, &guardTimer_, [this] {
        letGo();
        strokes_.clear();
    });
}

void X11KeyHold::start() {
    if (isActive_)
        return;
    constexpr std::uint32_t kEvents = XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE;
    const auto cookie = xcb_input_xi_grab_device(
        connection_.get(), connection_.root(), XCB_CURRENT_TIME, XCB_CURSOR_NONE, kCoreKeyboard,
        XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_MODE_22_ASYNC, 0, 1, &kEvents);
    // Where another program has the keyboard, the keys are that program's.
    xcb_discard_reply(connection_.get(), cookie.sequence);
    xcb_flush(connection_.get());
    isActive_ = true;
    guardTimer_.start();
}

void X11KeyHold::letGo() {
    if (!isActive_)
        return;
    guardTimer_.stop();
    xcb_input_xi_ungrab_device(connection_.get(), XCB_CURRENT_TIME, kCoreKeyboard);
    connection_.synchronize();
    connection_.tellQueuedEvents();
    isActive_ = false;
}

std::vector<X11KeyStroke> X11KeyHold::take() {
    return std::exchange(strokes_, {});
}

} // namespace quillmoth::platform
