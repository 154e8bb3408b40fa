#include "Platform/Posix/ReplaceFile.h"

#include "Platform/Posix/FileDescriptor.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <random>
#include <sys/stat.h>
#include <system_error>

namespace quillmoth::platform {

namespace {

Error failure(const char* action, const std::string& path, int code) {
    return Error{"Could not " + std::string(action) + " \"" + path +
                 "\": " + std::generic_category().message(code)};
}

/// 0, or the error's number.
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

/// 0, or the error's number.
int readAll(int file, std::string& bytes) {
    std::array<char, 65536> buffer;
    while (true) {
        const ssize_t count = read(file, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return count == 0 ? 0 : errno;
        bytes.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

struct TemporaryFile {
    std::string path;
    FileDescriptor file;
};

/// A short name of its own: the target's may be as long as the file system allows.
TemporaryFile makeTemporaryFile(const std::filesystem::path& folder, mode_t mode) {
    std::random_device random;
    TemporaryFile result;
    for (int attempt = 0; attempt < 16; ++attempt) {
        char name[40];
        std::snprintf(name, sizeof name, ".quillmoth-%08x%08x.tmp", random(), random());
        result.path = (folder / name).string();
        result.file =
            FileDescriptor(open(result.path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
        if (result.file || errno != EEXIST)
            break;
    }
    return result;
}

/// 0, or the error's number; the temporary file has gone then.
int writeAndRename(TemporaryFile& temporary, const std::string& target, std::string_view bytes,
                   const struct stat* former, std::optional<mode_t> mode) {
    // The owner first: changing it may clear bits of the mode. Only the superuser may; others keep theirs.
    if (former)
        (void)!fchown(temporary.file.get(), former->st_uid, former->st_gid);
    int error = mode && fchmod(temporary.file.get(), *mode) != 0 ? errno : 0;
    if (error == 0)
        error = writeAll(temporary.file.get(), bytes);
    if (!temporary.file.close() && error == 0)
        error = errno;
    if (error == 0 && std::rename(temporary.path.c_str(), target.c_str()) != 0)
        error = errno;
    if (error != 0)
        unlink(temporary.path.c_str());
    return error;
}

/// 0, or the error's number. A refusal to set space aside that is not for want of it does not count.
int reserve(int file, std::size_t size) {
    if (size == 0 || fallocate(file, FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(size)) == 0)
        return 0;
    return errno == ENOSPC || errno == EDQUOT || errno == EFBIG ? errno : 0;
}

int overwrite(int file, std::string_view bytes) {
    if (lseek(file, 0, SEEK_SET) != 0)
        return errno;
    const int error = writeAll(file, bytes);
    if (error != 0)
        return error;
    return ftruncate(file, static_cast<off_t>(bytes.size())) == 0 ? 0 : errno;
}

Result<std::string> writeInPlace(const std::string& target, std::string_view bytes,
                                 std::optional<mode_t> mode) {
    const FileDescriptor file(open(target.c_str(), O_RDWR | O_CLOEXEC));
    if (!file)
        return failure("write", target, errno);
    std::string former;
    int error = readAll(file.get(), former);
    if (error == 0)
        error = reserve(file.get(), bytes.size());
    if (error != 0)
        return failure("write", target, error);
    error = overwrite(file.get(), bytes);
    if (error != 0) {
        overwrite(file.get(), former);
        return failure("write", target, error);
    }
    if (mode && fchmod(file.get(), *mode) != 0)
        return failure("set the permissions of", target, errno);
    return target;
}

/// The folder, not the disk or the bytes, is what stands in the way.
bool folderRefuses(int error) {
    return error == EACCES || error == EPERM || error == EROFS || error == EBUSY || error == ETXTBSY;
}

} // namespace

Result<std::string> replaceFile(const std::string& path, std::string_view bytes,
                                std::optional<mode_t> forcedMode) {
    const std::string target = resolvedPath(path);

    struct stat former {};

    const bool exists = stat(target.c_str(), &former) == 0;
    if (exists && S_ISDIR(former.st_mode))
        return failure("write", target, EISDIR);
    if (exists && !S_ISREG(former.st_mode))
        return failure("write", target, EINVAL);
    if (exists && faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0)
        return failure("write", target, errno);
    const auto mode = exists && !forcedMode ? std::optional(former.st_mode & 07777) : forcedMode;
    auto temporary =
        makeTemporaryFile(std::filesystem::path(target).parent_path(), forcedMode.value_or(0666));
    int error = temporary.file ? 0 : errno;
    if (error == 0)
        error = writeAndRename(temporary, target, bytes, exists ? &former : nullptr, mode);
    if (error == 0)
        return target;
    return exists && folderRefuses(error) ? writeInPlace(target, bytes, forcedMode)
                                          : failure("write", target, error);
}

Result<std::string> readWholeFile(const std::string& path) {
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));

    struct stat status {};

    if (!file || fstat(file.get(), &status) != 0)
        return failure("read", path, errno);
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(status.st_size));
    const int error = readAll(file.get(), bytes);
    if (error != 0)
        return failure("read", path, error);
    return bytes;
}

Result<void> makeFolders(const std::string& path, mode_t mode) {
    const std::filesystem::path folder(path);
    if (mkdir(path.c_str(), mode) == 0)
        return {};
    int error = errno;
    if (error == ENOENT && folder.has_relative_path()) {
        auto above = makeFolders(folder.parent_path().string(), mode);
        if (!above)
            return above;
        error = mkdir(path.c_str(), mode) == 0 ? 0 : errno;
    }
    std::error_code ignored;
    if (error == 0 || std::filesystem::is_directory(folder, ignored))
        return {};
    return failure("make the folder", path, error == EEXIST ? ENOTDIR : error);
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
