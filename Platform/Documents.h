#pragma once

#include "Foundation/Result.h"

#include <string>

namespace quillmoth::platform {

/// The user's documents and the operations on files there. Main thread. Paths are absolute.
class Documents {
public:
    virtual ~Documents() = default;

    /// The folder for the user's documents; with `create` it is made where it is missing.
    [[nodiscard]] virtual Result<std::string> documentsDirectory(bool create) = 0;

    [[nodiscard]] virtual bool fileExists(const std::string& path) const = 0;

    /// Makes the folder and those above it.
    virtual Result<void> createDirectory(const std::string& path) = 0;

    [[nodiscard]] virtual Result<std::string> readFile(const std::string& path) const = 0;

    /// Replaces the whole content, or leaves the file as it was and fails.
    virtual Result<void> writeFile(const std::string& path, const std::string& bytes) = 0;
};

} // namespace quillmoth::platform
