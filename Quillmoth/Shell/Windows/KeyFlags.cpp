#include "Quillmoth/Shell/Windows/KeyFlags.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace quillmoth {

KeyboardShortcuts::ModifierFlags keyFlags(Qt::KeyboardModifiers modifiers) {
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

SpecialKey specialKey(int key) {
    if (key == Qt::Key_Tab)
        return SpecialKey::tab;
    if (key == Qt::Key_Escape)
        return SpecialKey::escape;
    if (key == Qt::Key_Backspace)
        return SpecialKey::deleteBackward;
    if (key == Qt::Key_Delete)
        return SpecialKey::deleteForward;
    return key >= Qt::Key_F1 && key <= Qt::Key_F35 ? SpecialKey::function : SpecialKey::none;
}

bool isModifierKey(int key) {
    constexpr int kKeys[] = {Qt::Key_Shift,   Qt::Key_Control,  Qt::Key_Alt,     Qt::Key_Meta,
                             Qt::Key_AltGr,   Qt::Key_Super_L,  Qt::Key_Super_R, Qt::Key_Hyper_L,
                             Qt::Key_Hyper_R, Qt::Key_CapsLock, Qt::Key_NumLock, Qt::Key_ScrollLock};
    return std::find(std::begin(kKeys), std::end(kKeys), key) != std::end(kKeys);
}

} // namespace quillmoth
