#pragma once

#include "KeyboardShortcuts/Shortcut.h"
#include "Platform/KeyboardLayout.h"

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

/// What a key pressed in the shortcut recorder leads to: the rules, without the field. Main thread.
namespace quillmoth {

/// Keys that a recorder knows by what they do rather than by position.
enum class SpecialKey { none, tab, escape, deleteBackward, deleteForward, function };

/// A press of a key while a shortcut is being recorded.
struct RecorderKeyPress {
    /// None where the position of the key has no virtual key code.
    std::optional<std::uint16_t> keyCode;
    KeyboardShortcuts::ModifierFlags modifierFlags = 0;
    SpecialKey specialKey = SpecialKey::none;
};

/// An item of the application's main menu. An equivalent written as a capital letter counts as shifted.
struct MainMenuItem {
    std::string title;
    std::string keyEquivalent;
    KeyboardShortcuts::ModifierFlags modifierMask = 0;
    std::vector<MainMenuItem> submenu;
};

/// Ends the recording; the key goes on to move the focus.
struct RecordingEndsAndMovesOn {};

/// Ends the recording.
struct RecordingEnds {};

/// Presses the clear button.
struct RecordingClears {};

/// No shortcut that could work.
struct RecordingBeeps {};

/// The menu item of this title has the shortcut.
struct RecordingMeetsMenuItem {
    std::string title;
};

/// The desktop has the shortcut.
struct RecordingMeetsSystem {};

/// To be stored; ends the recording.
struct RecordingAccepts {
    KeyboardShortcuts::Shortcut shortcut;
};

using RecordingStep = std::variant<RecordingEndsAndMovesOn, RecordingEnds, RecordingClears, RecordingBeeps,
                                   RecordingMeetsMenuItem, RecordingMeetsSystem, RecordingAccepts>;

/// Whether the desktop keeps a shortcut for itself; asked only where nothing else stands in the way.
using SystemCheck = std::function<bool(const KeyboardShortcuts::Shortcut&)>;

[[nodiscard]] RecordingStep recordingStep(const RecorderKeyPress& press,
                                          std::span<const MainMenuItem> mainMenu,
                                          const SystemCheck& isSystems, platform::KeyboardLayout& layout);

/// The first item, depth first, that has the shortcut; null where none has.
[[nodiscard]] const MainMenuItem* menuItemWithShortcut(std::span<const MainMenuItem> menu,
                                                       const KeyboardShortcuts::Shortcut& shortcut,
                                                       platform::KeyboardLayout& layout);

/// The recorder's texts by key; "keyboard_shortcut_used_by_menu_item" has "%@" where the title belongs.
[[nodiscard]] std::string recorderText(std::string_view key);

/// The text of "keyboard_shortcut_used_by_menu_item" for the item.
[[nodiscard]] std::string usedByMenuItemText(const std::string& title);

} // namespace quillmoth
