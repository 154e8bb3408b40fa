#pragma once

#include "Foundation/Result.h"

#include <optional>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace quillmoth::platform {

/// Replaces the content of the file at `path`, or makes it: whole into a temporary file in the same folder,
/// which is then renamed over it, through symbolic links to the file that they lead to. Where the folder
/// takes no new file, the file itself is written, after space for all of it has been set aside. On failure
/// the former content stands.
///
/// Permissions stay those of the former file, or become `forcedMode`. Answers with the path of the file that
/// was written, symbolic links resolved. Does not wait for the disk. Any thread.
Result<std::string> replaceFile(const std::string& path, std::string_view bytes,
                                std::optional<mode_t> forcedMode = std::nullopt);

/// The whole content of the file at `path`. Any thread.
Result<std::string> readWholeFile(const std::string& path);

/// Makes the folder and those above it, each with `mode` less the process's mask. Succeeds where it stands.
Result<void> makeFolders(const std::string& path, mode_t mode = 0777);

/// `path` with symbolic links followed, also where the file at the end of them does not exist.
std::string resolvedPath(const std::string& path);

} // namespace quillmoth::platform
