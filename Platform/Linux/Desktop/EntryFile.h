#pragma once

#include "Foundation/Result.h"

#include <filesystem>
#include <string>

namespace quillmoth::platform {

/// Writes a desktop entry for its owner alone: whole beside the target, to the disk, and renamed over it.
/// Makes the folders, for their owner alone. On failure the former entry stands. Any thread.
Result<void> writeEntryFile(const std::filesystem::path& path, const std::string& entry);

} // namespace quillmoth::platform
