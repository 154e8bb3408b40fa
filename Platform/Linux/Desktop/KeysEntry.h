#pragma once

#include "Foundation/Result.h"

#include <filesystem>
#include <string>

namespace quillmoth::platform {

/// Has KWin take synthetic keys from the program at `executable` (an absolute path): writes an entry that
/// asks for it, and that no menu shows, to `folder`, one of those of launcher entries. KWin goes by such
/// entries of a program's whole path without arguments, and by what they say when a program connects.
Result<void> writeKeysEntry(const std::string& executable, const std::filesystem::path& folder);

/// The same to the user's own folder. A failure is logged.
void offerKeysEntry(const std::string& executable);

} // namespace quillmoth::platform
