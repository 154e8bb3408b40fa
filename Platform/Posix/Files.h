#pragma once

#include "Foundation/Result.h"

#include <string>
#include <string_view>

#include <sys/types.h>

/// The parts of which reading and writing files is made. Any thread.
namespace quillmoth::platform {

/// "Could not <action> "<path>": <the system's words for the error number>".
[[nodiscard]] Error fileError(const char* action, const std::string& path, int code);

/// Writes all of it. 0, or the error's number.
[[nodiscard]] int writeAll(int file, std::string_view bytes);

/// Reads up to the end. 0, or the error's number.
[[nodiscard]] int readAll(int file, std::string& bytes);

/// Returns when the content is on the disk. 0, or the error's number. What has nothing to sync is no failure.
[[nodiscard]] int syncToDisk(int file);

/// The same for the entry of `path` in its folder. A folder that must not be read cannot be asked for it,
/// which is no failure.
[[nodiscard]] int syncFolderOf(const std::string& path);

/// The whole content of the file at `path`. Refuses what is no file, and what is larger than limits::kFile.
Result<std::string> readWholeFile(const std::string& path);

/// Makes the folder and those above it, each for its owner alone. Succeeds where it stands.
Result<void> makeFolders(const std::string& path);

/// `path` with symbolic links followed, also where the file at the end of them does not exist.
std::string resolvedPath(const std::string& path);

} // namespace quillmoth::platform
