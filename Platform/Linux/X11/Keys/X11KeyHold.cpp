#include "Platform/Linux/X11/Keys/X11KeyHold.h"

#include "Platform/Linux/X11/Keys/X11Modifiers.h"
#include "Platform/Linux/X11/Keys/X11PassiveGrab.h"

#include <chrono>
#include <utility>

namespace quillmoth::platform {

namespace {

constexpr std::chrono::milliseconds kGuardPause(500);

/// The first pair of master devices has these numbers on every server.
constexpr std::uint16_t kCoreKeyboard = 3;

constexpr xcb_keycode_t kAnyKey = 0;
constexpr std::uint32_t kAnyModifiers[] = {XCB_INPUT_MODIFIER_MASK_ANY};

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
}

X11KeyHold::X11KeyHold(X11Connection& connection, Callbacks callbacks)
    : connection_(connection), callbacks_(std::move(callbacks)), watchdog_(
                                                                     [this] {
                                                                         ungrab();
                                                                         xcb_flush(connection_.get());
                                                                     },
                                                                     [this] {
                                                                         letGo();
                                                                         callbacks_.gaveUp();
                                                                     }) {
    guardTimer_.setInterval(kGuardPause);
    QObject::connect(&guardTimer_, &QTimer::timeout, &guardTimer_, [this] { giveUp(); });
}

void X11KeyHold::start(xcb_keycode_t key) {
    key_ = key;
    guardTimer_.start();
    watchdog_.start();
    if (!std::exchange(isActive_, true))
        hasAllKeys_ = grabKey(connection_, kAnyKey, kAnyModifiers);
}

void X11KeyHold::insist() {
    if (isActive_ && !hasAllKeys_ && !std::exchange(isForced_, true))
        grabKeyboard(connection_);
}

void X11KeyHold::keyReleased() {
    if (isActive_)
        guardTimer_.start();
}

void X11KeyHold::letGo() {
    if (!isActive_)
        return;
    guardTimer_.stop();
    watchdog_.stop();
    ungrab();
    hasAllKeys_ = false;
    callbacks_.lostGrabs();
    connection_.synchronize();
    connection_.tellQueuedEvents();
    isActive_ = false;
    isForced_ = false;
}

/// Any thread.
void X11KeyHold::ungrab() {
    ungrabKey(connection_, kAnyKey, kAnyModifiers);
    ungrabKeyboard(connection_);
}

void X11KeyHold::giveUp() {
    // Its release would go to another program.
    if (key_ != 0 && isKeyDown(connection_, key_))
        return;
    letGo();
    callbacks_.gaveUp();
}

std::vector<X11KeyStroke> X11KeyHold::take() {
    return std::exchange(strokes_, {});
}

} // namespace quillmoth::platform
