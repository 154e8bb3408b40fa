#pragma once

#include <string>

/// Where this user's files lie, as absolute paths.
namespace quillmoth::platform {

/// The documents folder of the XDG user directories.
[[nodiscard]] std::string documentsFolder();

/// "quillmoth/defaults.json" in the folder for configuration (XDG Base Directory Specification).
[[nodiscard]] std::string defaultsFilePath();

} // namespace quillmoth::platform
