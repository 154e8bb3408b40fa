#pragma once

#include "Platform/KeyboardEvents.h"
#include "Platform/Linux/X11/Keys/X11Modifiers.h"
#include "Platform/Linux/X11/Server/X11Connection.h"

#include <functional>
#include <vector>

namespace quillmoth::platform {

/// Synthetic keys by the XTEST extension. A flag on an event becomes a key held around it, since X has no
/// flags of its own: Command is Control. Modifiers that the user holds are released from a press to its
/// release; what is locked stays locked.
class X11KeyboardEvents : public KeyboardEvents {
public:
    /// Runs what it is given while this program keeps no keys from the others.
    using Bracket = std::function<void(const std::function<void()>&)>;

    /// As long as `isForbidden` says so no key with a flag is sent: a copy would destroy what cannot be
    /// brought back.
    void setVeto(std::function<bool()> isForbidden) { isForbidden_ = std::move(isForbidden); }

    /// `connection` outlives the object.
    X11KeyboardEvents(X11Connection& connection, Bracket withoutGrab);

    std::optional<CGKeyboardEvent> createKeyboardEvent(std::uint16_t keyCode, bool keyDown) override;
    void post(const CGKeyboardEvent& event) override;

    /// Control with the key that writes a "v", where there is one, otherwise with the one in its usual place.
    void postPaste();

private:
    void press(xcb_keycode_t keycode, keys::ModifierFlags flags);
    void release(xcb_keycode_t keycode);
    void fake(std::uint8_t type, xcb_keycode_t keycode);

    X11Connection& connection_;
    Bracket withoutGrab_;
    std::function<bool()> isForbidden_;
    /// Of the user's, released for the press that is under way.
    std::vector<xcb_keycode_t> released_;
    bool pressedControl_ = false;
};

} // namespace quillmoth::platform
