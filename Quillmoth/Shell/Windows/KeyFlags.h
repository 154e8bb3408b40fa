#pragma once

#include "KeyboardShortcuts/Modifiers.h"
#include "Quillmoth/Settings/Recording.h"

#include <Qt>

namespace quillmoth {

/// The toolkit's modifiers as those of a key event: Ctrl is command, Alt is option, Meta is control.
[[nodiscard]] KeyboardShortcuts::ModifierFlags keyFlags(Qt::KeyboardModifiers modifiers);

/// Which of the keys that a recording treats apart the toolkit's `key` is.
[[nodiscard]] SpecialKey specialKey(int key);

/// A press of one of these alone changes the modifiers and is no key.
[[nodiscard]] bool isModifierKey(int key);

} // namespace quillmoth
