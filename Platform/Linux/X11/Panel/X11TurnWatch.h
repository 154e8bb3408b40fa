#pragma once

#include "Platform/Linux/X11/Server/X11Connection.h"

#include <cstdint>
#include <functional>

namespace quillmoth::platform {

/// Buttons 4 to 7 are the wheels. Scrolling elsewhere does not count as a press there.
[[nodiscard]] bool isWheel(std::uint32_t button);

/// Watches what the user does around one window of this program: presses of the pointer anywhere, and changes
/// of the active window. Menus and dialogs that belong to the window count as the window; all others of
/// this program count as elsewhere. No events are asked for before `start` and after `stop`. Main thread.
class X11TurnWatch {
public:
    struct Callbacks {
        /// With the time of the press. Where the pointer was is asked after the press, so this is also called
        /// for a press inside after which the pointer left the window at once.
        std::function<void(xcb_timestamp_t)> pressedOutside;
        std::function<void()> pressedInside;
        std::function<void()> activatedElsewhere;
    };

    /// `connection` outlives the object.
    X11TurnWatch(X11Connection& connection, Callbacks callbacks);

    void start(xcb_window_t window);
    void stop();

private:
    void handle(const xcb_generic_event_t& event);
    void handlePress(xcb_timestamp_t time);
    void handleActiveWindow();

    X11Connection& connection_;
    Callbacks callbacks_;
    xcb_window_t window_ = 0;
    xcb_window_t activeWindow_ = 0;
    Subscription events_;
};

} // namespace quillmoth::platform
