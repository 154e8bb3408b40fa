#pragma once

#include "Platform/Linux/X11/Server/X11Connection.h"

#include <cstdint>
#include <string>

namespace quillmoth::platform {

/// Finds out whether another program has a key combination: it asks for the combination and gives it back at
/// once.
class X11HotKeyProbe {
public:
    /// `connection` outlives the object; it must not be the hot keys' own.
    explicit X11HotKeyProbe(X11Connection& connection) : connection_(connection) {}

    /// Whether any client has grabbed the key, in the core way or by the X Input Extension, this one
    /// included.
    [[nodiscard]] bool isGrabbed(xcb_keycode_t keycode, std::uint32_t modifiers) const;

    /// In virtual key codes and Carbon modifiers. Our own hot keys do not count.
    [[nodiscard]] bool isShortcutTaken(std::uint32_t keyCode, std::uint32_t carbonModifiers) const;

    /// Who the likely owner is, by the name that it gives itself; empty where no window manager runs.
    [[nodiscard]] std::string windowManagerName() const;

private:
    [[nodiscard]] bool hasCoreGrab(xcb_keycode_t keycode, std::uint32_t modifiers) const;

    X11Connection& connection_;
};

} // namespace quillmoth::platform
