#pragma once

#include "Platform/Linux/Gnome/GnomeExtension.h"

#include <vector>

namespace quillmoth::platform {

/// Whether the compositor takes keys over its own interface for remote desktops. Main thread.
[[nodiscard]] bool hasMutterKeys();

/// Sends keys to the window with the keyboard, by a remote desktop's session that is begun for them and ended
/// behind them; meanwhile the desktop shows the sign of a shared screen. Takes some 20 ms, a second at most.
/// False where the compositor has refused, after which nothing is held down. Main thread.
bool sendMutterKeys(const std::vector<KeyStep>& steps);

} // namespace quillmoth::platform
