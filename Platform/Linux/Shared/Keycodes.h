#pragma once

#include <cstdint>
#include <optional>

/// Virtual key codes and X keycodes: both name positions on the keyboard. An X keycode is the kernel's key
/// code (linux/input-event-codes.h) plus 8.
namespace quillmoth::platform {

/// None for a position that X cannot name.
[[nodiscard]] std::optional<std::uint8_t> keycodeForVirtualKeyCode(std::uint32_t virtualKeyCode);

[[nodiscard]] std::optional<std::uint16_t> virtualKeyCodeForKeycode(std::uint32_t keycode);

} // namespace quillmoth::platform
