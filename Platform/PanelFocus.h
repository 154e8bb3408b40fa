#pragma once

#include "Foundation/Subscription.h"

#include <cstdint>
#include <functional>

namespace quillmoth::platform {

/// The keyboard for a window of this program while another application stays the active one. Main thread.
class PanelFocus {
public:
    /// The window system's own name of a window.
    using WindowIdentifier = std::uint64_t;

    enum class Turn {
        /// The pointer was pressed outside of the window and of what it has opened; another window of this
        /// program is outside too.
        pressedElsewhere,
        /// Another window has become the active one.
        activatedElsewhere,
        /// A key combination that belongs to the window manager was pressed.
        desktopShortcut,
        /// The session is being locked or suspended.
        sessionLocked,
        /// No key has been pressed for a minute.
        idle,
    };

    virtual ~PanelFocus() = default;

    /// Whether a window that has acquired the keyboard has it from then on. Otherwise the desktop decides,
    /// and the window learns by being activated.
    [[nodiscard]] virtual bool isImmediate() const { return true; }

    /// The window is about to come on screen: where the window system allows it, keys from now on are kept
    /// for it, until it acquires the keyboard in the same turn of the main queue.
    virtual void prepare() {}

    /// Sends the keyboard to `window`, which must be on screen. It may take effect a little later.
    virtual void acquire(WindowIdentifier window) = 0;

    /// Gives the keyboard back to the active application before it returns.
    virtual void release() = 0;

    [[nodiscard]] virtual bool isHeld() const = 0;

    /// Called while a window has the keyboard, or has lost it and is still watched, until release.
    virtual Subscription onTurnedElsewhere(std::function<void(Turn)> subscriber) = 0;
};

} // namespace quillmoth::platform
