#include "Platform/Posix/FileDocuments.h"

#include "Platform/MainQueue.h"
#include "Platform/Posix/Files.h"

#include <cerrno>

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

    return stat(path.c_str(), &status) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

Result<void> FileDocuments::createDirectory(const std::string& path) {
    return makeFolders(path);
}

Result<std::string> FileDocuments::readFile(const std::string& path) const {
    writer_.flush();
    return readWholeFile(path);
}

Result<void> FileDocuments::writeFile(const std::string& path, const std::string& bytes) {
    Result<void> result;
    writer_.replace(path, bytes, [&result](const Result<void>& written) { result = written; });
    writer_.flush();
    return result;
}

void FileDocuments::saveFile(const std::string& path, std::string bytes, Done done) {
    writer_.replace(path, std::move(bytes), onMainQueue(std::move(done)));
}

void FileDocuments::appendToFile(const std::string& path, std::string bytes, Done done) {
    writer_.append(path, std::move(bytes), onMainQueue(std::move(done)));
}

void FileDocuments::removeFile(const std::string& path, Done done) {
    writer_.remove(path, onMainQueue(std::move(done)));
}

FileWriter::Done FileDocuments::onMainQueue(Done done) {
    return [&mainQueue = mainQueue_, done = std::move(done)](const Result<void>& result) {
        mainQueue.async([done, result] { done(result); });
    };
}

} // namespace quillmoth::platform
