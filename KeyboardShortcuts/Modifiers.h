#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace quillmoth::KeyboardShortcuts {

/// Modifiers as key events carry them: a set of flags.
using ModifierFlags = std::uint64_t;

constexpr ModifierFlags kFlagCapsLock = 0x10000;
constexpr ModifierFlags kFlagShift = 0x20000;
constexpr ModifierFlags kFlagControl = 0x40000;
constexpr ModifierFlags kFlagOption = 0x80000;
constexpr ModifierFlags kFlagCommand = 0x100000;
constexpr ModifierFlags kFlagNumericPad = 0x200000;
constexpr ModifierFlags kFlagFunction = 0x800000;

/// Modifiers as the registration of hot keys and the stored shortcuts carry them: a set of masks.
using CarbonModifiers = std::int64_t;

constexpr CarbonModifiers kCarbonCommand = 0x100;
constexpr CarbonModifiers kCarbonShift = 0x200;
constexpr CarbonModifiers kCarbonOption = 0x800;
constexpr CarbonModifiers kCarbonControl = 0x1000;

struct Modifier {
    /// 0 for a modifier that hot keys do not know.
    CarbonModifiers carbonMask;
    ModifierFlags flag;
    std::string_view symbol;
};

/// Control, option, shift, command, function: the order in which they are shown.
[[nodiscard]] std::span<const Modifier> allModifiers();

/// Drops what the other vocabulary does not know, which leaves control, option, shift and command.
[[nodiscard]] CarbonModifiers carbonModifiers(ModifierFlags flags);
[[nodiscard]] ModifierFlags modifierFlags(CarbonModifiers carbonModifiers);

} // namespace quillmoth::KeyboardShortcuts
