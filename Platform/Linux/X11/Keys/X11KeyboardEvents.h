#pragma once

#include "Platform/KeyboardEvents.h"
#include "Platform/Linux/X11/Keys/X11Modifiers.h"
#include "Platform/Linux/X11/Server/X11Connection.h"

#include <functional>
#include <optional>
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

    /// Whether any can be sent.
    [[nodiscard]] bool takesKeys() const { return connection_.takesKeys(); }

    /// A key by what it writes.
    struct Stroke {
        std::uint32_t keysym = 0;
        bool control = false;
    };

    /// Control with the key that writes a "v", where there is one, otherwise with the one in its usual place.
    void postPaste();

    /// One stroke after the other. False, with nothing sent, where the layout in force writes one of them
    /// with no key; a chord may use the key of another layout of the user's.
    bool postStrokes(const std::vector<Stroke>& strokes);

private:
    struct Key {
        xcb_keycode_t keycode = 0;
        bool isShifted = false;
    };

    [[nodiscard]] std::optional<Key> keyFor(const Stroke& stroke);
    void press(xcb_keycode_t keycode, keys::ModifierFlags flags);
    void release(xcb_keycode_t keycode);
    void hold(xcb_keycode_t modifier, bool (*isOfKind)(xcb_keycode_t), std::vector<xcb_keycode_t>& held);
    void fake(std::uint8_t type, xcb_keycode_t keycode);

    X11Connection& connection_;
    Bracket withoutGrab_;
    std::function<bool()> isForbidden_;
    /// Of the user's, released for the press that is under way.
    std::vector<xcb_keycode_t> released_;
    /// Our own, pressed for it.
    std::vector<xcb_keycode_t> pressed_;
};

} // namespace quillmoth::platform
