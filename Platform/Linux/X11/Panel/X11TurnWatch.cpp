#include "Platform/Linux/X11/Panel/X11TurnWatch.h"

#include "Platform/Linux/X11/Server/X11Windows.h"

#include <algorithm>
#include <utility>
#include <xcb/xinput.h>

namespace quillmoth::platform {

bool isWheel(std::uint32_t button) {
    return button >= 4 && button <= 7;
}

X11TurnWatch::X11TurnWatch(X11Connection& connection, Callbacks callbacks)
    : connection_(connection), callbacks_(std::move(callbacks)) {}

void X11TurnWatch::start(xcb_window_t window) {
    window_ = window;
    if (events_)
        return;
    activeWindow_ = activeWindow(connection_);
    events_ = connection_.onEvent([this](const xcb_generic_event_t& event) { handle(event); });
    connection_.selectEvents(connection_.root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
    connection_.selectInputEvents(XCB_INPUT_DEVICE_ALL_MASTER, XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS);
}

void X11TurnWatch::stop() {
    if (!events_)
        return;
    events_.reset();
    connection_.selectInputEvents(XCB_INPUT_DEVICE_ALL_MASTER, 0);
}

void X11TurnWatch::handle(const xcb_generic_event_t& event) {
    const auto type = event.response_type & 0x7F;
    if (type == XCB_GE_GENERIC) {
        const auto& press = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
        if (press.extension == connection_.inputOpcode() && press.event_type == XCB_INPUT_RAW_BUTTON_PRESS &&
            !isWheel(press.detail))
            handlePress(press.time);
    } else if (type == XCB_PROPERTY_NOTIFY) {
        const auto& notice = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (notice.window == connection_.root() && notice.atom == connection_.atom("_NET_ACTIVE_WINDOW"))
            handleActiveWindow();
    }
}

void X11TurnWatch::handlePress(xcb_timestamp_t time) {
    const auto windows = windowsUnderPointer(connection_);
    if (std::any_of(windows.begin(), windows.end(),
                    [this](auto window) { return belongsTo(connection_, window, window_); }))
        callbacks_.pressedInside();
    else if (std::none_of(windows.begin(), windows.end(),
                          [this](auto window) { return belongsToInputMethod(connection_, window); }))
        callbacks_.pressedOutside(time);
}

void X11TurnWatch::handleActiveWindow() {
    const auto window = activeWindow(connection_);
    // None is a moment between two windows, or a desktop without any.
    if (window != 0 && window != std::exchange(activeWindow_, window) &&
        !belongsTo(connection_, window, window_))
        callbacks_.activatedElsewhere();
}

} // namespace quillmoth::platform
