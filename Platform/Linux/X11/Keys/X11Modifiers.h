#pragma once

#include "Platform/Linux/X11/Server/X11Connection.h"

#include <array>
#include <cstdint>
#include <vector>

namespace quillmoth::platform {

/// The modifiers of which a hot key may be made, as X knows them: Shift, Control, Alt (Mod1), Super (Mod4).
constexpr std::uint32_t kHotKeyModifiers =
    XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;

/// Command is Control here, option is Alt, and control is Super.
[[nodiscard]] std::uint32_t modifiersForCarbon(std::uint32_t carbonModifiers);

/// Which keys are modifiers now; read from the server once.
class X11Modifiers {
public:
    explicit X11Modifiers(X11Connection& connection);

    /// The mask of Num Lock; 0 where the keyboard has none.
    [[nodiscard]] std::uint32_t numLock() const { return numLock_; }

    /// No lock, Caps Lock, Num Lock, both: a grab is needed for each.
    [[nodiscard]] std::array<std::uint32_t, 4> lockVariants() const;

    /// The keys that act while they are held: no locks.
    [[nodiscard]] const std::vector<xcb_keycode_t>& heldKeys() const { return heldKeys_; }

private:
    std::uint32_t numLock_ = 0;
    std::vector<xcb_keycode_t> heldKeys_;
};

/// The keys that are down now, by any hand.
[[nodiscard]] bool isKeyDown(X11Connection& connection, xcb_keycode_t keycode);
[[nodiscard]] std::vector<xcb_keycode_t> keysDown(X11Connection& connection,
                                                  const std::vector<xcb_keycode_t>& among);

} // namespace quillmoth::platform
