#pragma once

#include <filesystem>
#include <string>

namespace quillmoth::platform {

/// Sees to it that the desktop hands URLs of the scheme "quillmoth" to the program at `executable` (an
/// absolute path), also where it was not installed but built: writes a launcher entry of the user's own and
/// has it made the handler, by a program that is started and not waited for. Does nothing where the system
/// has an entry for the program, or the user's own says the same already. A failure is logged.
void offerSchemeHandler(const std::string& executable);

/// The text of that entry.
[[nodiscard]] std::string schemeHandlerEntry(const std::string& executable);

} // namespace quillmoth::platform
