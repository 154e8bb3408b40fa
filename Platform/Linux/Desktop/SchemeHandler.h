#pragma once

#include "Foundation/Result.h"

#include <filesystem>
#include <string>
#include <vector>

namespace quillmoth::platform {

/// Sees to it that the desktop hands URLs of the scheme "quillmoth" to the program, also where it was not
/// installed but built and lies at `executable` (an absolute path). Has the entry that takes them made the
/// handler, by a program that is started and not waited for. A failure is logged.
void offerSchemeHandler(const std::string& executable);

/// What offerSchemeHandler() does to files. `folders` are the desktop's folders of launcher entries, the
/// user's own first. Where none has the installed program's entry, one for `executable` is written to the
/// user's own, under another name; where one has, that is removed again. An entry that former versions wrote
/// under the installed name is removed. Answers with the name of the entry that is to take the URLs from now
/// on; empty where nothing has changed.
[[nodiscard]] Result<std::string> arrangeSchemeEntries(const std::string& executable,
                                                       const std::vector<std::filesystem::path>& folders);

} // namespace quillmoth::platform
