#include "Platform/Linux/X11/Panel/X11KeyDrain.h"

#include "Platform/Linux/X11/Keys/X11Modifiers.h"
#include "Platform/Linux/X11/Keys/X11PassiveGrab.h"
#include "Platform/Linux/X11/Server/X11Reply.h"

#include <chrono>
#include <utility>

namespace quillmoth::platform {

namespace {

constexpr std::chrono::milliseconds kGuardPause(100);

constexpr std::uint32_t kAnyModifiers[] = {XCB_INPUT_MODIFIER_MASK_ANY};

} // namespace

X11KeyDrain::X11KeyDrain(X11Connection& connection, std::function<void(const X11KeyStroke&)> handOn)
    : connection_(connection), handOn_(std::move(handOn)) {
    guardTimer_.setInterval(kGuardPause);
    QObject::connect(&guardTimer_, &QTimer::timeout, &guardTimer_, [this] {
        if (key_ && !isKeyDown(connection_, *key_))
            stop();
    });
}

void X11KeyDrain::start(xcb_keycode_t key) {
    stop();
    if (!repeats(key) || !isKeyDown(connection_, key))
        return;
    grabKeyUnchecked(connection_, key, kAnyModifiers);
    xcb_flush(connection_.get());
    key_ = key;
    events_ = connection_.onEvent([this](const xcb_generic_event_t& event) { handle(event); });
    guardTimer_.start();
}

void X11KeyDrain::stop() {
    const auto key = std::exchange(key_, std::nullopt);
    if (!key)
        return;
    guardTimer_.stop();
    events_.reset();
    ungrabKey(connection_, *key, kAnyModifiers);
    ungrabKeyboard(connection_);
    connection_.synchronize();
}

bool X11KeyDrain::repeats(xcb_keycode_t key) const {
    const auto cookie = xcb_get_keyboard_control(connection_.get());
    const auto reply = owned(xcb_get_keyboard_control_reply(connection_.get(), cookie, nullptr));
    return reply && reply->global_auto_repeat == XCB_AUTO_REPEAT_MODE_ON &&
           (reply->auto_repeats[key / 8] >> (key % 8) & 1) != 0;
}

void X11KeyDrain::handle(const xcb_generic_event_t& event) {
    const auto& key = reinterpret_cast<const xcb_input_key_press_event_t&>(event);
    const bool isInput =
        (event.response_type & 0x7F) == XCB_GE_GENERIC && key.extension == connection_.inputOpcode();
    const bool isPress = isInput && key.event_type == XCB_INPUT_KEY_PRESS;
    if (!isPress && !(isInput && key.event_type == XCB_INPUT_KEY_RELEASE))
        return;
    if (isPress && (key.flags & XCB_INPUT_KEY_EVENT_FLAGS_KEY_REPEAT))
        return;
    const X11KeyStroke stroke = strokeOf(key, isPress);
    if (isPress && repeats(stroke.keycode)) {
        stop();
        handOn_(stroke);
    } else if (stroke.keycode == key_) {
        stop();
    }
}

} // namespace quillmoth::platform
