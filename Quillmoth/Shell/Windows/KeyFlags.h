#pragma once

#include "KeyboardShortcuts/Modifiers.h"

#include <Qt>

#include <utility>

namespace quillmoth {

/// The toolkit's modifiers as those of a key event: Ctrl is command, Alt is option, Meta is control.
[[nodiscard]] inline KeyboardShortcuts::ModifierFlags keyFlags(Qt::KeyboardModifiers modifiers) {
    constexpr std::pair<Qt::KeyboardModifier, KeyboardShortcuts::ModifierFlags> kTable[] = {
        {Qt::ControlModifier, KeyboardShortcuts::kFlagCommand},
        {Qt::AltModifier, KeyboardShortcuts::kFlagOption},
        {Qt::ShiftModifier, KeyboardShortcuts::kFlagShift},
        {Qt::MetaModifier, KeyboardShortcuts::kFlagControl},
        {Qt::KeypadModifier, KeyboardShortcuts::kFlagNumericPad}};
    KeyboardShortcuts::ModifierFlags set = 0;
    for (const auto& [modifier, flag] : kTable) {
        if (modifiers & modifier)
            set |= flag;
    }
    return set;
}

} // namespace quillmoth
