#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace quillmoth::platform {

/// The names of this user's running programs that look only at their start whether accessibility is switched
/// on: those on Qt 6, and those on the engine of Chromium. Of the programs with windows on other X displays
/// than `display` none. Sorted, each once, without this program. Reads some hundred small files.
[[nodiscard]] std::vector<std::string> programsToRestart(const std::string& display,
                                                         const std::filesystem::path& processes = "/proc");

} // namespace quillmoth::platform
