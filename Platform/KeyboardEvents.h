#pragma once

#include "Platform/Keys.h"

#include <cstdint>
#include <optional>

namespace quillmoth::platform {

/// One press or release of a key position.
struct CGKeyboardEvent {
    /// Virtual key code: a position on the keyboard, not a character.
    std::uint16_t keyCode = 0;
    bool keyDown = false;
    /// Of these only command is used.
    keys::ModifierFlags flags = 0;
};

/// Synthetic key presses to whatever application has the keyboard. Main thread.
class KeyboardEvents {
public:
    virtual ~KeyboardEvents() = default;

    /// None where no event can be made.
    [[nodiscard]] virtual std::optional<CGKeyboardEvent> createKeyboardEvent(std::uint16_t keyCode,
                                                                             bool keyDown) = 0;

    /// Modifiers that the user holds do not reach the receiver with it.
    virtual void post(const CGKeyboardEvent& event) = 0;
};

} // namespace quillmoth::platform
