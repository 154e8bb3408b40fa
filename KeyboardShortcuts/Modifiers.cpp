#include "KeyboardShortcuts/Modifiers.h"

namespace quillmoth::KeyboardShortcuts {

namespace {

constexpr Modifier kModifiers[] = {
    {kCarbonControl, kFlagControl, "\u2303"}, {kCarbonOption, kFlagOption, "\u2325"},
    {kCarbonShift, kFlagShift, "\u21E7"},     {kCarbonCommand, kFlagCommand, "\u2318"},
    {0, kFlagFunction, "\U0001F310\uFE0E"},
};

} // namespace

std::span<const Modifier> allModifiers() {
    return kModifiers;
}

CarbonModifiers carbonModifiers(ModifierFlags flags) {
    CarbonModifiers result = 0;
    for (const auto& modifier : kModifiers) {
        if (flags & modifier.flag)
            result |= modifier.carbonMask;
    }
    return result;
}

ModifierFlags modifierFlags(CarbonModifiers carbonModifiers) {
    ModifierFlags result = 0;
    for (const auto& modifier : kModifiers) {
        if (carbonModifiers & modifier.carbonMask)
            result |= modifier.flag;
    }
    return result;
}

} // namespace quillmoth::KeyboardShortcuts
