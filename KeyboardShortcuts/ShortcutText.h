#pragma once

#include "KeyboardShortcuts/Shortcut.h"
#include "Platform/KeyboardLayout.h"

#include <optional>
#include <string>

/// Shortcuts as texts, under the keyboard layout in force at the moment of the call. Main thread.
namespace quillmoth::KeyboardShortcuts {

/// The symbol of a named key, otherwise what the layout writes there; none where it gives nothing.
[[nodiscard]] std::optional<std::string> keyCodeText(std::int64_t carbonKeyCode,
                                                     platform::KeyboardLayout& layout);

/// The text that stands for the key in a menu; empty where the key has none.
[[nodiscard]] std::string keyEquivalent(const Shortcut& shortcut, platform::KeyboardLayout& layout);

/// Symbols of the modifiers in their fixed order, then the key in upper case.
[[nodiscard]] std::string description(const Shortcut& shortcut, platform::KeyboardLayout& layout);

/// The same in the words of this keyboard, such as "Alt+Space": for tooltips and for assistive technology.
/// Command is Ctrl here, Option is Alt, and Control is Super.
[[nodiscard]] std::string spokenDescription(const Shortcut& shortcut, platform::KeyboardLayout& layout);

} // namespace quillmoth::KeyboardShortcuts
