#pragma once

#include "Platform/Linux/X11/X11Connection.h"

#include <cstdint>
#include <functional>

namespace quillmoth::platform {

/// Watches what the user does around a window of this program: presses of the pointer anywhere, and changes
/// of the active window. Tells nothing, and costs nothing, while it is not started. Main thread.
class X11TurnWatch {
public:
    struct Callbacks {
        /// With the time of the press. The pointer is looked for only afterwards: when it has moved out of
        /// the window at once, this is told of a press inside.
        std::function<void(xcb_timestamp_t)> pressedOutside;
        std::function<void()> pressedInside;
        std::function<void()> activatedElsewhere;
    };

    /// A window is our own when its number is within the toolkit's range: `ownBase` and `ownMask` as in the
    /// setup of the toolkit's connection. `connection` outlives the object.
    X11TurnWatch(X11Connection& connection, std::uint32_t ownBase, std::uint32_t ownMask,
                 Callbacks callbacks);

    void start();
    void stop();

private:
    [[nodiscard]] bool isOwn(xcb_window_t window) const { return (window & ~ownMask_) == ownBase_; }

    void handle(const xcb_generic_event_t& event);
    void handlePress(xcb_timestamp_t time);
    void handleActiveWindow();

    X11Connection& connection_;
    std::uint32_t ownBase_;
    std::uint32_t ownMask_;
    Callbacks callbacks_;
    xcb_window_t activeWindow_ = 0;
    Subscription events_;
};

} // namespace quillmoth::platform
