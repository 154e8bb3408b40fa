#pragma once

#include "Platform/Linux/Desktop/KeyCombination.h"

#include <QByteArray>

#include <string>
#include <vector>

/// The key combinations that window managers and desktops have in their settings.
namespace quillmoth::platform {

/// Those of the window manager of that name (as it calls itself) and of its desktop; empty for one whose
/// settings cannot be read. Reads files and, for the GNOME family, the settings store; main thread.
[[nodiscard]] std::vector<KeyCombination> desktopKeySettings(const std::string& windowManager);

/// Of Openbox's rc.xml. Of a chain of keys the first one counts.
[[nodiscard]] std::vector<KeyCombination> openboxKeys(const QByteArray& xml);

/// Of Xfce's channel "xfce4-keyboard-shortcuts": the user's own list where there is one, else the default.
[[nodiscard]] std::vector<KeyCombination> xfceKeys(const QByteArray& xml);

/// Of a GSettings schema; empty where it is not installed.
[[nodiscard]] std::vector<KeyCombination> schemaKeys(const std::string& schema);

} // namespace quillmoth::platform
