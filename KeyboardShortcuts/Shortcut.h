#pragma once

#include "KeyboardShortcuts/Modifiers.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace quillmoth::KeyboardShortcuts {

/// A key event as a view receives it.
struct KeyEvent {
    static constexpr int kKeyDown = 10;
    static constexpr int kKeyUp = 11;

    int type = 0;
    std::uint16_t keyCode = 0;
    ModifierFlags modifierFlags = 0;
};

/// A key and the modifiers held with it: control, option, shift and command, never others. A plain value.
struct Shortcut {
    std::int64_t carbonKeyCode = 0;
    CarbonModifiers carbonModifiers = 0;

    Shortcut(Key key, ModifierFlags modifiers);
    Shortcut(std::int64_t carbonKeyCode, CarbonModifiers carbonModifiers);

    /// None for an event that is no press and no release of a key.
    [[nodiscard]] static std::optional<Shortcut> fromEvent(const KeyEvent& event);

    /// The stored form: a JSON object with the members "carbonKeyCode", which events have from 0 to 65535,
    /// and "carbonModifiers". None for anything else.
    [[nodiscard]] static std::optional<Shortcut> fromJSON(std::string_view text);
    [[nodiscard]] std::string toJSON() const;

    [[nodiscard]] Key key() const { return Key(carbonKeyCode); }

    [[nodiscard]] ModifierFlags modifiers() const { return modifierFlags(carbonModifiers); }

    friend bool operator==(const Shortcut&, const Shortcut&) = default;
};

} // namespace quillmoth::KeyboardShortcuts

template<>
struct std::hash<quillmoth::KeyboardShortcuts::Shortcut> {
    std::size_t operator()(const quillmoth::KeyboardShortcuts::Shortcut& shortcut) const noexcept {
        // Shifted, the masks stay clear of the codes that keys have.
        return std::hash<std::int64_t>()(shortcut.carbonKeyCode ^ (shortcut.carbonModifiers << 8));
    }
};
