#include "Platform/Posix/ReplaceFile.h"

#include "Foundation/FileDescriptor.h"
#include "Platform/Posix/Files.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

namespace quillmoth::platform {

namespace {

constexpr mode_t kOwnerAlone = 0600;

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

/// Puts `bytes` into the temporary file, on the disk. 0, or the error's number.
int fillTemporaryFile(TemporaryFile& temporary, std::string_view bytes, const struct stat* former,
                      std::optional<mode_t> mode) {
    // The owner first: changing it may clear bits of the mode. Only the superuser may; others keep theirs.
    if (former)
        (void)!fchown(temporary.file.get(), former->st_uid, former->st_gid);
    int error = mode && fchmod(temporary.file.get(), *mode) != 0 ? errno : 0;
    if (error == 0)
        error = writeAll(temporary.file.get(), bytes);
    if (error == 0)
        error = syncToDisk(temporary.file.get());
    if (!temporary.file.close() && error == 0)
        error = errno;
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
        return fileError("write", target, errno);
    std::string former;
    int error = readAll(file.get(), former);
    if (error == 0)
        error = reserve(file.get(), bytes.size());
    if (error != 0)
        return fileError("write", target, error);
    error = overwrite(file.get(), bytes);
    if (error != 0) {
        overwrite(file.get(), former);
        return fileError("write", target, error);
    }
    if (mode && fchmod(file.get(), *mode) != 0)
        return fileError("set the permissions of", target, errno);
    error = syncToDisk(file.get());
    if (error != 0)
        return fileError("bring to the disk", target, error);
    return target;
}

/// Why no file may be put in the place of `target`, which `former` describes; 0 for nothing.
int refusal(const std::string& target, const struct stat& former) {
    if (S_ISDIR(former.st_mode))
        return EISDIR;
    if (!S_ISREG(former.st_mode))
        return EINVAL;
    // What cannot be read is nowhere else, and is not written over.
    return faccessat(AT_FDCWD, target.c_str(), R_OK | W_OK, AT_EACCESS) == 0 ? 0 : errno;
}

/// The folder takes no new file, or gives the former one not up: then the file itself may still be written.
bool takesNoNewFile(int error) {
    return error == EACCES || error == EPERM || error == EROFS;
}

bool keepsItsFile(int error) {
    return error == EACCES || error == EPERM || error == EBUSY || error == ETXTBSY;
}

} // namespace

Result<std::string> replaceFile(const std::string& path, std::string_view bytes,
                                std::optional<mode_t> forcedMode) {
    const std::string target = resolvedPath(path);

    struct stat former {};

    const bool exists = stat(target.c_str(), &former) == 0;
    int error = exists ? refusal(target, former) : errno == ENOENT ? 0 : errno;
    if (error != 0)
        return fileError("write", target, error);
    const auto mode = exists && !forcedMode ? std::optional(former.st_mode & 07777) : forcedMode;
    auto temporary =
        makeTemporaryFile(std::filesystem::path(target).parent_path(), forcedMode.value_or(kOwnerAlone));
    if (!temporary.file) {
        error = errno;
        return exists && takesNoNewFile(error) ? writeInPlace(target, bytes, forcedMode)
                                               : fileError("write", target, error);
    }
    error = fillTemporaryFile(temporary, bytes, exists ? &former : nullptr, mode);
    const bool isFilled = error == 0;
    if (isFilled && std::rename(temporary.path.c_str(), target.c_str()) != 0)
        error = errno;
    if (error != 0) {
        unlink(temporary.path.c_str());
        return exists && isFilled && keepsItsFile(error) ? writeInPlace(target, bytes, forcedMode)
                                                         : fileError("write", target, error);
    }
    error = syncFolderOf(target);
    return error == 0 ? Result(target) : fileError("bring to the disk", target, error);
}

Result<void> appendToFile(const std::string& path, std::string_view bytes) {
    const FileDescriptor file(
        open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK, kOwnerAlone));

    struct stat former {};

    if (!file || fstat(file.get(), &former) != 0)
        return fileError("write", path, errno);
    if (!S_ISREG(former.st_mode))
        return fileError("write", path, EINVAL);
    int error = writeAll(file.get(), bytes);
    if (error == 0)
        error = syncToDisk(file.get());
    if (error == 0 && former.st_size == 0)
        error = syncFolderOf(path);
    if (error == 0)
        return {};
    (void)!ftruncate(file.get(), former.st_size);
    return fileError("write", path, error);
}

} // namespace quillmoth::platform
