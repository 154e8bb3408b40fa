#include "Platform/Posix/DefaultsFile.h"

#include "Foundation/Limits.h"

#include "Foundation/Log.h"
#include "Platform/Posix/Files.h"
#include "Platform/Posix/ReplaceFile.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace quillmoth::platform {

namespace {

constexpr mode_t kFileMode = 0600;

bool sameMoment(const timespec& first, const timespec& second) {
    return first.tv_sec == second.tv_sec && first.tv_nsec == second.tv_nsec;
}

} // namespace

bool operator==(const FileStamp& first, const FileStamp& second) {
    return first.device == second.device && first.inode == second.inode && first.size == second.size &&
           sameMoment(first.modified, second.modified) && sameMoment(first.changed, second.changed);
}

FileStamp DefaultsFile::stamp() const {
    struct stat status {};

    if (stat(path_.c_str(), &status) != 0)
        return {};
    return {status.st_dev, status.st_ino, status.st_size, status.st_mtim, status.st_ctim};
}

DefaultsFile::Content DefaultsFile::read() const {
    struct stat status {};

    if (stat(path_.c_str(), &status) != 0)
        return errno == ENOENT ? Content{}
                               : Content{.condition = Condition::unreadable,
                                         .reason = std::generic_category().message(errno)};
    if (S_ISREG(status.st_mode) && (status.st_mode & 0777) != kFileMode)
        chmod(path_.c_str(), kFileMode);
    const auto bytes = readWholeFile(path_);
    if (!bytes)
        return {.condition = Condition::unreadable, .reason = bytes.error().description};
    if (bytes->find_first_not_of(" \t\r\n") == std::string::npos)
        return {};
    // Settings are flat; what follows nested values in depth would run out of stack.
    bool isTooDeep = false;
    const auto isWithinDepth = [&isTooDeep](int depth, DefaultsObject::parse_event_t, DefaultsObject&) {
        isTooDeep = isTooDeep || depth > limits::kDefaultsDepth;
        return !isTooDeep;
    };
    auto object = DefaultsObject::parse(*bytes, isWithinDepth, false);
    if (isTooDeep || !object.is_object())
        return {.condition = Condition::damaged, .reason = "it does not hold a JSON object"};
    return {.object = std::move(object)};
}

bool DefaultsFile::keepAside(const std::string& reason, std::string& told) const {
    const std::string target = resolvedPath(path_);
    int number = 1;
    std::string aside;

    struct stat status {};

    do
        aside = target + ".damaged-" + std::to_string(number++);
    while (lstat(aside.c_str(), &status) == 0);
    const bool moved = std::rename(target.c_str(), aside.c_str()) == 0;
    told = "The settings in \"" + target + "\" cannot be read: " + reason + ". " +
           (moved ? "They are kept in \"" + aside + "\"." : "The file stays as it is.");
    logLine(told);
    return moved;
}

Result<std::string> DefaultsFile::write(const DefaultsObject& object) const {
    const auto folder = std::filesystem::path(path_).parent_path().string();
    const auto made = makeFolders(folder);
    if (!made)
        return made.error();
    // Ill-formed UTF-8 becomes U+FFFD rather than a failure.
    const std::string text = object.dump(2, ' ', false, DefaultsObject::error_handler_t::replace) + '\n';
    return replaceFile(path_, text, kFileMode);
}

DefaultsLock::DefaultsLock(const std::string& folder)
    : folder_(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    // Often: another process that writes one value after the other leaves short gaps only.
    constexpr auto kPause = std::chrono::microseconds(200);
    constexpr int kAttempts = 25'000;
    for (int attempt = 0; folder_ >= 0 && attempt < kAttempts; ++attempt) {
        if (flock(folder_, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK)
            return;
        std::this_thread::sleep_for(kPause);
    }
}

DefaultsLock::~DefaultsLock() {
    // Closing gives the lock back.
    if (folder_ >= 0)
        close(folder_);
}

} // namespace quillmoth::platform
