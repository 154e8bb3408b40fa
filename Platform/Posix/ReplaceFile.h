#pragma once

#include "Foundation/Result.h"

#include <optional>
#include <string>
#include <string_view>

#include <sys/types.h>

/// Changes of files that a crash leaves whole: a file is the old one or the new one. They wait for the disk.
/// Any thread.
namespace quillmoth::platform {

/// Replaces the content of the file at `path`, or makes it: whole into a temporary file in the same folder,
/// which is synced and then renamed over it, through symbolic links to the file that they lead to; the folder
/// is synced after that. On failure the former content stands.
///
/// Where the folder takes no new file, the file itself is written, after space for all of it has been set
/// aside: the end of the process in that moment may leave it half written.
///
/// Permissions stay those of the former file, or become `forcedMode`; a new file is for its owner alone.
/// Answers with the path of the file that was written, symbolic links resolved.
Result<std::string> replaceFile(const std::string& path, std::string_view bytes,
                                std::optional<mode_t> forcedMode = std::nullopt);

/// Puts `bytes` behind the end of the file at `path`, or makes it, for its owner alone. On failure nothing is
/// left of them where the system allows that.
Result<void> appendToFile(const std::string& path, std::string_view bytes);

} // namespace quillmoth::platform
