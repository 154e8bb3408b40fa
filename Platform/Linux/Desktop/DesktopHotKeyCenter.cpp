#include "Platform/Linux/Desktop/DesktopHotKeyCenter.h"

#include "Platform/Keys.h"
#include "Platform/Linux/Desktop/DesktopKeySettings.h"

#include <utility>

namespace quillmoth::platform {

namespace {

bool isWindowMenuKey(std::int64_t keyCode, std::int64_t carbonModifiers) {
    return keys::Key(keyCode) == keys::Key::space && carbonModifiers == keys::kCarbonOption;
}

} // namespace

DesktopHotKeyCenter::DesktopHotKeyCenter(HotKeyCenter& hotKeys, KeyboardLayout& layout, Desktop desktop)
    : hotKeys_(hotKeys), layout_(layout), desktop_(std::move(desktop)) {}

std::vector<SymbolicHotKey> DesktopHotKeyCenter::copySymbolicHotKeys() {
    std::vector<SymbolicHotKey> hotKeys = hotKeys_.copySymbolicHotKeys();
    const std::vector<KeyCombination> keys = desktopKeySettings(desktop_.windowManagerName());
    if (keys.empty())
        return hotKeys;
    const KeyNames names(layout_);
    for (const auto& [key, modifiers] : keys) {
        const auto keyCode = names.virtualKeyCode(key);
        if (keyCode && !isWindowMenuKey(*keyCode, modifiers))
            hotKeys.push_back({.enabled = true, .keyCode = *keyCode, .carbonModifiers = modifiers});
    }
    return hotKeys;
}

bool DesktopHotKeyCenter::isTakenElsewhere(std::uint32_t keyCode, std::uint32_t carbonModifiers) {
    return !isWindowMenuKey(keyCode, carbonModifiers) && desktop_.isTaken(keyCode, carbonModifiers);
}

} // namespace quillmoth::platform
