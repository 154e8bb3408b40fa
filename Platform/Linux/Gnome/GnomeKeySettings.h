#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// The keys in GNOME's settings (GSettings). Main thread.
namespace quillmoth::platform {

/// Whether GNOME's list of custom shortcuts is there.
[[nodiscard]] bool hasCustomShortcuts();

/// The combination of the custom shortcut that is this program's, as GTK writes accelerators, empty where it
/// has none; none where there is no such shortcut.
[[nodiscard]] std::optional<std::string> ownCustomShortcut();

/// Adds the program's shortcut, or changes it, and returns when that is stored.
void setOwnCustomShortcut(const std::string& accelerator, const std::string& command);
void removeOwnCustomShortcut();

/// What GNOME itself, or another custom shortcut, does with a combination that `isWanted` tells, in the words
/// of GNOME's settings ("Activate the window menu"); none where it is free.
[[nodiscard]] std::optional<std::string>
holderOfShortcut(const std::function<bool(const std::string& accelerator)>& isWanted);

/// All accelerators that are taken, the program's own left out.
[[nodiscard]] std::vector<std::string> takenAccelerators();

/// How a held key repeats.
struct KeyRepeat {
    std::chrono::milliseconds delay{500};
    std::chrono::milliseconds interval{30};
};

[[nodiscard]] KeyRepeat keyRepeat();

/// Adds the extension to those that the shell starts, or takes it from them. False where the settings cannot
/// be written.
bool setShellExtensionEnabled(const std::string& identifier, bool isEnabled);
[[nodiscard]] bool isShellExtensionEnabled(const std::string& identifier);

} // namespace quillmoth::platform
