#include "Quillmoth/Settings/Recording.h"

#include "Foundation/ASCII.h"
#include "Foundation/FatalError.h"
#include "KeyboardShortcuts/ShortcutText.h"

#include <algorithm>
#include <array>
#include <utility>

namespace quillmoth {

namespace {

using KeyboardShortcuts::kFlagShift;
using KeyboardShortcuts::ModifierFlags;
using KeyboardShortcuts::Shortcut;

/// Caps lock, numeric pad and function, which say nothing about the shortcut.
constexpr ModifierFlags kIgnoredFlags = 0xA10000;
/// What depends on the device.
constexpr ModifierFlags kDeviceFlags = 0xFFFF;
constexpr std::string_view kTitlePlace = "%@";

constexpr std::array<std::pair<std::string_view, std::string_view>, 5> kTexts{{
    {"record_shortcut", "Record shortcut"},
    {"press_shortcut", "Press shortcut…"},
    {"keyboard_shortcut_used_by_menu_item",
     "This keyboard shortcut cannot be used, since the menu item “%@” has it already."},
    {"keyboard_shortcut_used_by_system",
     "This keyboard shortcut cannot be used, since your desktop uses it already."},
    {"keyboard_shortcuts_can_be_changed",
     "Most of the desktop’s shortcuts can be changed in its own settings, under “Keyboard”."},
}};

/// Lower case for a single ASCII capital; a name such as "F9" is no capital letter.
std::string uncapitalized(const std::string& equivalent) {
    return equivalent.size() == 1 ? lowercasedASCII(equivalent) : equivalent;
}

bool matches(const MainMenuItem& item, const std::string& key, ModifierFlags modifiers) {
    std::string equivalent = item.keyEquivalent;
    ModifierFlags mask = item.modifierMask;
    if (modifiers & kFlagShift) {
        if (std::string lower = uncapitalized(equivalent); lower != equivalent) {
            equivalent = std::move(lower);
            mask |= kFlagShift;
        }
    }
    return key == equivalent && mask == modifiers;
}

const MainMenuItem* itemWith(std::span<const MainMenuItem> menu, const std::string& key,
                             ModifierFlags modifiers) {
    for (const auto& item : menu) {
        if (matches(item, key, modifiers))
            return &item;
        if (const auto* found = itemWith(item.submenu, key, modifiers))
            return found;
    }
    return nullptr;
}

bool isTaken(const Shortcut& shortcut, const SystemCheck& isSystems) {
    // Listed by the desktop, and free all the same.
    return shortcut != Shortcut(KeyboardShortcuts::Key::f12, 0) && isSystems(shortcut);
}

/// The keys that mean something of their own while no modifier is held.
std::optional<RecordingStep> stepOfPlainKey(const RecorderKeyPress& press) {
    if (press.specialKey == SpecialKey::tab)
        return RecordingEndsAndMovesOn{};
    // By what it does too: a session may tell no positions.
    if (press.keyCode == KeyboardShortcuts::Key::escape.rawValue || press.specialKey == SpecialKey::escape)
        return RecordingEnds{};
    if (press.specialKey == SpecialKey::deleteBackward || press.specialKey == SpecialKey::deleteForward)
        return RecordingClears{};
    return std::nullopt;
}

} // namespace

RecordingStep recordingStep(const RecorderKeyPress& press, std::span<const MainMenuItem> mainMenu,
                            const SystemCheck& isSystems, platform::KeyboardLayout& layout) {
    const ModifierFlags modifiers = press.modifierFlags & ~kIgnoredFlags & ~kDeviceFlags;
    if (modifiers == 0) {
        if (auto step = stepOfPlainKey(press))
            return *std::move(step);
    }
    if ((modifiers & ~kFlagShift) == 0 && press.specialKey != SpecialKey::function)
        return RecordingBeeps{};
    if (!press.keyCode)
        return RecordingBeeps{};
    const auto shortcut = Shortcut::fromEvent({.type = KeyboardShortcuts::KeyEvent::kKeyDown,
                                               .keyCode = *press.keyCode,
                                               .modifierFlags = press.modifierFlags});
    if (!shortcut)
        return RecordingBeeps{};
    if (const auto* item = menuItemWithShortcut(mainMenu, *shortcut, layout))
        return RecordingMeetsMenuItem{item->title};
    if (isTaken(*shortcut, isSystems))
        return RecordingMeetsSystem{};
    return RecordingAccepts{*shortcut};
}

const MainMenuItem* menuItemWithShortcut(std::span<const MainMenuItem> menu, const Shortcut& shortcut,
                                         platform::KeyboardLayout& layout) {
    // Once for all items: the layout is read from the window system.
    const auto key = KeyboardShortcuts::keyCodeText(shortcut.carbonKeyCode, layout);
    return key ? itemWith(menu, *key, shortcut.modifiers()) : nullptr;
}

std::string recorderText(std::string_view key) {
    const auto* found =
        std::find_if(kTexts.begin(), kTexts.end(), [&](const auto& text) { return text.first == key; });
    if (found == kTexts.end())
        fatalError("The recorder has no text \"" + std::string(key) + "\".");
    return std::string(found->second);
}

std::string usedByMenuItemText(const std::string& title) {
    std::string text = recorderText("keyboard_shortcut_used_by_menu_item");
    return text.replace(text.find(kTitlePlace), kTitlePlace.size(), title);
}

} // namespace quillmoth
