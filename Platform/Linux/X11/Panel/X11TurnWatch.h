#pragma once

#include "Platform/Linux/X11/Server/X11Connection.h"

#include <cstdint>
#include <functional>

namespace quillmoth::platform {

/// Buttons 4 to 7 are the wheels: turning one is not turning to something else.
[[nodiscard]] bool isWheel(std::uint32_t button);

/// Watches what the user does around one window of this program: presses of the pointer anywhere, and changes
/// of the active window. What opens on behalf of the window counts as the window; every other one of this
/// program is as foreign as those of others. Tells nothing, and costs nothing, while it is not started. Main
/// thread.
class X11TurnWatch {
public:
    struct Callbacks {
        /// With the time of the press. The pointer is looked for only afterwards: when it has moved out of
        /// the window at once, this is told of a press inside.
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
