#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace quillmoth::platform {

class KeyboardLayout;

/// A key combination as desktops write it down in their settings.
struct KeyCombination {
    /// The X name of what the key writes or does, such as "space", "Left" or "a".
    std::string key;
    /// Ctrl is Command here, Alt is Option, and Super is Control.
    std::int64_t carbonModifiers = 0;

    friend bool operator==(const KeyCombination&, const KeyCombination&) = default;
};

/// "C-A-Left", as Openbox writes it. None for a modifier that hot keys do not know.
[[nodiscard]] std::optional<KeyCombination> openboxCombination(std::string_view text);

/// "<Primary><Alt>Left", as GTK writes accelerators. None for what is no accelerator ("disabled", "").
[[nodiscard]] std::optional<KeyCombination> acceleratorCombination(std::string_view text);

/// The same, backwards: "<Control><Alt>Left". What is no key's name gives no accelerator.
[[nodiscard]] std::string writtenAccelerator(const KeyCombination& combination);

/// Finds keys by their X names under the layout in force when it was made.
class KeyNames {
public:
    explicit KeyNames(KeyboardLayout& layout);

    /// None for a key without a virtual key code.
    [[nodiscard]] std::optional<std::uint16_t> virtualKeyCode(const std::string& key) const;

    /// None for a key that writes what has no name in ASCII.
    [[nodiscard]] std::optional<std::string> name(std::uint16_t virtualKeyCode) const;

private:
    /// By what the key writes.
    std::map<std::string, std::uint16_t, std::less<>> characters_;
};

} // namespace quillmoth::platform
