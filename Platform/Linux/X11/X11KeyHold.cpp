#include "Platform/Linux/X11/X11KeyHold.h"

#include <chrono>
#include <utility>

namespace quillmoth::platform {

namespace {

constexpr std::chrono::milliseconds kGuardPause(500);

/// The first pair of master devices has these numbers on every server.
constexpr std::uint16_t kCoreKeyboard = 3;

} // namespace

X11KeyStroke strokeOf(const xcb_input_key_press_event_t& key, bool isPress) {
    constexpr int kGroupShift = 13;
    const auto group = static_cast<std::uint32_t>(key.group.effective & 3) << kGroupShift;
    return {static_cast<xcb_keycode_t>(key.detail), key.mods.effective | group, key.time, isPress};
}

void grabKeyboard(X11Connection& connection) {
    constexpr std::uint32_t kEvents = XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE;
    const auto cookie = xcb_input_xi_grab_device(connection.get(), connection.root(), XCB_CURRENT_TIME,
                                                 XCB_CURSOR_NONE, kCoreKeyboard, XCB_INPUT_GRAB_MODE_22_ASYNC,
                                                 XCB_INPUT_GRAB_MODE_22_ASYNC, 0, 1, &kEvents);
    xcb_discard_reply(connection.get(), cookie.sequence);
    xcb_flush(connection.get());
}

void ungrabKeyboard(X11Connection& connection) {
    xcb_input_xi_ungrab_device(connection.get(), XCB_CURRENT_TIME, kCoreKeyboard);
    connection.synchronize();
}

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
    grabKeyboard(connection_);
    isActive_ = true;
    guardTimer_.start();
}

void X11KeyHold::letGo() {
    if (!isActive_)
        return;
    guardTimer_.stop();
    ungrabKeyboard(connection_);
    connection_.tellQueuedEvents();
    isActive_ = false;
}

std::vector<X11KeyStroke> X11KeyHold::take() {
    return std::exchange(strokes_, {});
}

} // namespace quillmoth::platform
