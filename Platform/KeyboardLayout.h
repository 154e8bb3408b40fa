#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace quillmoth::platform {

/// The keyboard layout in force. Main thread.
class KeyboardLayout {
public:
    virtual ~KeyboardLayout() = default;

    /// What the key at the virtual key code `keyCode` writes without modifiers, or the sign on its cap where
    /// it writes nothing; at most 4 UTF-16 units. None where the layout is not known or gives nothing.
    [[nodiscard]] virtual std::optional<std::string> translate(std::uint16_t keyCode) = 0;
};

} // namespace quillmoth::platform
