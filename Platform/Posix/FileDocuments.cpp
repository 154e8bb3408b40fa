#include "Platform/Posix/FileDocuments.h"

#include "Platform/Posix/DiskSync.h"
#include "Platform/Posix/ReplaceFile.h"

#include <sys/stat.h>

namespace quillmoth::platform {

Result<std::string> FileDocuments::documentsDirectory(bool create) {
    if (create) {
        const auto made = makeFolders(folder_);
        if (!made)
            return made.error();
    }
    return folder_;
}

bool FileDocuments::fileExists(const std::string& path) const {
    struct stat status {};

    return stat(path.c_str(), &status) == 0;
}

Result<void> FileDocuments::createDirectory(const std::string& path) {
    return makeFolders(path);
}

Result<std::string> FileDocuments::readFile(const std::string& path) const {
    return readWholeFile(path);
}

Result<void> FileDocuments::writeFile(const std::string& path, const std::string& bytes) {
    const auto written = replaceFile(path, bytes);
    if (!written)
        return written.error();
    diskSync_.request(*written);
    return {};
}

} // namespace quillmoth::platform
