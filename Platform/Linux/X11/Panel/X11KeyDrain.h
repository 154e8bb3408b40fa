#pragma once

#include "Platform/Linux/X11/Keys/X11KeyHold.h"

#include <QTimer>
#include <functional>
#include <optional>

namespace quillmoth::platform {

/// Keeps the repeats of a key that the user still holds from the other programs: the key has closed the
/// panel, and Ctrl+Return repeated into a chat would send what stands there. Ends with the key's release, or
/// with another key, which is the other program's. Main thread.
///
/// Until the key repeats, nothing is kept back; from then until its release the server sends all keys here.
class X11KeyDrain {
public:
    /// `connection` outlives the object; it must not hold hot keys. `handOn` is called with a press that is
    /// no repeat, when the keyboard is free again.
    X11KeyDrain(X11Connection& connection, std::function<void(const X11KeyStroke&)> handOn);

    /// Does nothing for a key that is not down or does not repeat.
    void start(xcb_keycode_t key);
    /// Frees the keyboard before it returns.
    void stop();

private:
    [[nodiscard]] bool repeats(xcb_keycode_t key) const;
    void handle(const xcb_generic_event_t& event);

    X11Connection& connection_;
    std::function<void(const X11KeyStroke&)> handOn_;
    std::optional<xcb_keycode_t> key_;
    /// Looks whether the key is still down: its release is told only once it has repeated.
    QTimer guardTimer_;
    Subscription events_;
};

} // namespace quillmoth::platform
