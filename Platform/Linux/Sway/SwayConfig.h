#pragma once

#include "Platform/Keys.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace quillmoth::platform {

/// Key combinations in the compositor's configuration: see sway(5).
struct SwayCombination {
    /// As in the kernel's table, plus 8.
    std::uint32_t keycode = 0;
    keys::CarbonModifiers modifiers = 0;

    friend bool operator==(const SwayCombination&, const SwayCombination&) = default;
};

/// As an argument of bindcode: "Mod1+65".
[[nodiscard]] std::string writtenSwayCombination(const SwayCombination& combination);

/// The command that the configuration gives to the combination outside of all modes; none where it gives
/// none. What files included by it say is not seen. `keycodeOf` finds the key that writes a keysym's name,
/// such as "space".
[[nodiscard]] std::optional<std::string>
boundSwayCommand(std::string_view configuration, const SwayCombination& wanted,
                 const std::function<std::optional<std::uint32_t>(const std::string& name)>& keycodeOf);

} // namespace quillmoth::platform
