#pragma once

#include "Foundation/Result.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include <sys/stat.h>

namespace quillmoth::platform {

/// Which state of a file was read: two of them differ when the file has been written or replaced in between.
struct FileStamp {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = -1;
    timespec modified{};
    timespec changed{};

    friend bool operator==(const FileStamp& first, const FileStamp& second);
};

/// The JSON object in the defaults file, with its order and with members that this version does not know.
using DefaultsObject = nlohmann::ordered_json;

/// The file behind the defaults store: only for its owner to read, and replaced as a whole.
class DefaultsFile {
public:
    explicit DefaultsFile(std::string path) : path_(std::move(path)) {}

    [[nodiscard]] const std::string& path() const { return path_; }

    /// The stamp of a file that does not exist has the size -1.
    [[nodiscard]] FileStamp stamp() const;

    enum class Condition { sound, damaged, unreadable };

    struct Content {
        Condition condition = Condition::sound;
        DefaultsObject object = DefaultsObject::object();
        /// In words, where the condition is not sound.
        std::string reason = {};
    };

    /// A missing or blank file is an empty object. Takes group's and others' permissions away.
    [[nodiscard]] Content read() const;

    /// Renames the file to the first free "<name>.damaged-<n>" and logs so. False where it stays in place.
    /// `told` is what was logged.
    bool keepAside(const std::string& reason, std::string& told) const;

    /// Answers with the path of the file written, symbolic links resolved.
    Result<std::string> write(const DefaultsObject& object) const;

private:
    std::string path_;
};

/// Keeps other processes of this program from changing the store for the lifetime of the object. Waits
/// some 6 seconds at most and goes on without it then: a stuck process must not hold this one.
class DefaultsLock {
public:
    explicit DefaultsLock(const std::string& folder);
    ~DefaultsLock();
    DefaultsLock(const DefaultsLock&) = delete;
    DefaultsLock& operator=(const DefaultsLock&) = delete;

private:
    int folder_;
};

} // namespace quillmoth::platform
