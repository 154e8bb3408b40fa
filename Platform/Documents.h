#pragma once

#include "Foundation/Result.h"

#include <functional>
#include <string>

namespace quillmoth::platform {

/// The user's documents and the operations on files there. Main thread. Paths are absolute. Files and folders
/// that are made are for the user alone.
///
/// What is saved, appended or removed is done in the background, in the order in which it was asked for, and
/// read as if it had been done.
class Documents {
public:
    /// Called on the main thread, in a later turn, when it is on the disk or has failed.
    using Done = std::function<void(const Result<void>&)>;

    virtual ~Documents() = default;

    /// The folder for the user's documents; with `create` it is made where it is missing.
    [[nodiscard]] virtual Result<std::string> documentsDirectory(bool create) = 0;

    /// True also where the system does not tell.
    [[nodiscard]] virtual bool fileExists(const std::string& path) const = 0;

    /// Makes the folder and those above it.
    virtual Result<void> createDirectory(const std::string& path) = 0;

    [[nodiscard]] virtual Result<std::string> readFile(const std::string& path) const = 0;

    /// Replaces the whole content, or leaves the file as it was and fails. Waits for the disk.
    virtual Result<void> writeFile(const std::string& path, const std::string& bytes) = 0;

    /// The same in the background. Of several that wait for one file the last is written.
    virtual void saveFile(const std::string& path, std::string bytes, Done done) = 0;

    /// Puts `bytes` behind the end of the file, or makes it.
    virtual void appendToFile(const std::string& path, std::string bytes, Done done) = 0;

    /// A file that is not there is no failure.
    virtual void removeFile(const std::string& path, Done done) = 0;
};

} // namespace quillmoth::platform
