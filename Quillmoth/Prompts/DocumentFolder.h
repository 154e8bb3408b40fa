#pragma once

#include "Foundation/Result.h"

#include <string>

namespace quillmoth::platform {
class Documents;
}

/// The folder "Quillmoth" of the user's documents. Main thread.
namespace quillmoth {

/// Where the file is, or would be; nothing is made.
[[nodiscard]] Result<std::string> documentPath(const std::string& filename, platform::Documents& documents);

/// The folder's path, after it was made where it is missing.
[[nodiscard]] Result<std::string> makeDocumentFolder(platform::Documents& documents);

/// Copies `bytes` to the first free "<filename>.damaged-<n>", and logs where; once for the same bytes.
/// Answers with the path of the copy; empty where there is nothing to copy.
[[nodiscard]] Result<std::string> keepDamaged(const std::string& filename, const std::string& bytes,
                                              platform::Documents& documents);

} // namespace quillmoth
