#pragma once

#include <string>

/// The extension of GNOME Shell that this program brings along, in the user's own folder. Main thread.
namespace quillmoth::platform {

constexpr char kShellExtensionIdentifier[] = "shell@quillmoth.org";

/// The version of the running shell ("43.9"); empty where there is none.
[[nodiscard]] std::string shellVersion();

/// Writes it for that version of the shell, and has the shell start it from the next log-in on. What is wrong
/// in words; empty where nothing is.
[[nodiscard]] std::string installShellExtension(const std::string& version);

/// Takes it away again; one that runs is stopped.
void removeShellExtension();

/// Whether it is there and to be started.
[[nodiscard]] bool isShellExtensionInstalled();

} // namespace quillmoth::platform
