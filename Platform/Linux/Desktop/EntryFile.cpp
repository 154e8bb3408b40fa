#include "Platform/Linux/Desktop/EntryFile.h"

#include <cerrno>
#include <cstdlib>
#include <string_view>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillmoth::platform {

namespace {

namespace fs = std::filesystem;

/// 0, or the error's number.
int makeOwnFolders(const fs::path& folder) {
    if (folder.empty() || mkdir(folder.c_str(), 0700) == 0)
        return 0;
    int error = errno;
    if (error == ENOENT && folder.has_relative_path()) {
        error = makeOwnFolders(folder.parent_path());
        if (error == 0 && mkdir(folder.c_str(), 0700) != 0)
            error = errno;
    }
    std::error_code ignored;
    return fs::is_directory(folder, ignored) ? 0 : error;
}

/// Into a new file, whose name it puts in the place of the pattern. 0, or the error's number.
int writeDraft(std::string& pattern, std::string_view entry) {
    // For its owner alone, whatever the process's mask is.
    const int file = mkostemp(pattern.data(), O_CLOEXEC);
    if (file < 0)
        return errno;
    int error = 0;
    while (error == 0 && !entry.empty()) {
        const ssize_t count = write(file, entry.data(), entry.size());
        if (count >= 0)
            entry.remove_prefix(static_cast<std::size_t>(count));
        else if (errno != EINTR)
            error = errno;
    }
    if (error == 0 && fsync(file) != 0 && errno != EINVAL)
        error = errno;
    if (close(file) != 0 && error == 0)
        error = errno;
    return error;
}

} // namespace

Result<void> writeEntryFile(const fs::path& path, const std::string& entry) {
    constexpr std::string_view kPattern = ".XXXXXX";
    std::string draft = path.string() + std::string(kPattern);
    int error = makeOwnFolders(path.parent_path());
    if (error == 0)
        error = writeDraft(draft, entry);
    if (error == 0 && rename(draft.c_str(), path.c_str()) != 0)
        error = errno;
    if (error == 0)
        return {};
    if (!draft.ends_with(kPattern))
        unlink(draft.c_str());
    return Error{"Could not write \"" + path.string() + "\": " + std::generic_category().message(error)};
}

} // namespace quillmoth::platform
