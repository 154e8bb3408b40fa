#pragma once

#include "Platform/Keys.h"

#include <span>
#include <string_view>

namespace quillmoth::KeyboardShortcuts {

/// The keys and modifiers of shortcuts are those of the platform.
using namespace platform::keys;

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
