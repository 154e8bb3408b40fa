#include "Platform/Posix/Files.h"

#include "Foundation/Limits.h"
#include "Foundation/FileDescriptor.h"

#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>

namespace quillmoth::platform {

namespace {

constexpr mode_t kFolderMode = 0700;

} // namespace

Error fileError(const char* action, const std::string& path, int code) {
    return Error{"Could not " + std::string(action) + " \"" + path +
                 "\": " + std::generic_category().message(code)};
}

int writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(file, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return errno;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return 0;
}

int readAll(int file, std::string& bytes) {
    std::array<char, 65536> buffer;
    while (true) {
        const ssize_t count = read(file, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return count == 0 ? 0 : errno;
        bytes.append(buffer.data(), static_cast<std::size_t>(count));
        if (bytes.size() > static_cast<std::size_t>(limits::kFile))
            return EFBIG;
    }
}

int syncToDisk(int file) {
    while (fsync(file) != 0) {
        // EINVAL: a file system, or a kind of file, that has nothing to sync.
        if (errno != EINTR)
            return errno == EINVAL ? 0 : errno;
    }
    return 0;
}

int syncFolderOf(const std::string& path) {
    const std::string folder = std::filesystem::path(path).parent_path().string();
    const FileDescriptor file(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!file)
        return errno == EACCES ? 0 : errno;
    return syncToDisk(file.get());
}

Result<std::string> readWholeFile(const std::string& path) {
    // A pipe of that name would be waited for.
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));

    struct stat status {};

    if (!file || fstat(file.get(), &status) != 0)
        return fileError("read", path, errno);
    if (!S_ISREG(status.st_mode))
        return fileError("read", path, S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
    if (status.st_size > limits::kFile)
        return fileError("read", path, EFBIG);
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(status.st_size));
    const int error = readAll(file.get(), bytes);
    if (error != 0)
        return fileError("read", path, error);
    return bytes;
}

Result<void> makeFolders(const std::string& path) {
    const std::filesystem::path folder(path);
    int error = mkdir(path.c_str(), kFolderMode) == 0 ? 0 : errno;
    if (error == ENOENT && folder.has_relative_path()) {
        auto above = makeFolders(folder.parent_path().string());
        if (!above)
            return above;
        error = mkdir(path.c_str(), kFolderMode) == 0 ? 0 : errno;
    }
    std::error_code ignored;
    if (error == 0 || std::filesystem::is_directory(folder, ignored))
        return {};
    return fileError("make the folder", path, error == EEXIST ? ENOTDIR : error);
}

std::string resolvedPath(const std::string& path) {
    // As many links as the kernel follows.
    constexpr int kMostLinks = 40;
    std::filesystem::path current(path);
    std::error_code error;
    for (int links = 0; links < kMostLinks; ++links) {
        const auto next = std::filesystem::read_symlink(current, error);
        if (error)
            break;
        // An absolute path replaces all that stands before it.
        current = current.parent_path() / next;
    }
    return current.string();
}

} // namespace quillmoth::platform
