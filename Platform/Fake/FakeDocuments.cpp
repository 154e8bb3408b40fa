#include "Platform/Fake/FakeDocuments.h"

namespace quillmoth::platform {

namespace {

std::string folderOf(const std::string& path) {
    return path.substr(0, path.rfind('/'));
}

} // namespace

Result<std::string> FakeDocuments::documentsDirectory(bool create) {
    if (hasNoDirectory)
        return Error{"There is no folder for documents."};
    if (create)
        directories.insert(kDirectory);
    return std::string(kDirectory);
}

bool FakeDocuments::fileExists(const std::string& path) const {
    return files.contains(path) || directories.contains(path);
}

Result<void> FakeDocuments::createDirectory(const std::string& path) {
    if (isFolderUnwritable)
        return Error{"The folder " + path + " cannot be made."};
    for (std::size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1))
        directories.insert(path.substr(0, slash));
    directories.insert(path);
    return {};
}

Result<std::string> FakeDocuments::readFile(const std::string& path) const {
    const auto found = files.find(path);
    if (found == files.end())
        return Error{path + ": No such file or directory"};
    if (unreadable.contains(path))
        return Error{path + ": Permission denied"};
    return found->second;
}

Result<void> FakeDocuments::writeFile(const std::string& path, const std::string& bytes) {
    if (!directories.contains(folderOf(path)))
        return Error{path + ": No such file or directory"};
    if (isFolderUnwritable)
        return Error{path + ": Permission denied"};
    if (isDiskFull)
        return Error{path + ": No space left on device"};
    files[path] = bytes;
    ++writeCount;
    return {};
}

void FakeDocuments::saveFile(const std::string& path, std::string bytes, Done done) {
    done(writeFile(path, bytes));
}

void FakeDocuments::appendToFile(const std::string& path, std::string bytes, Done done) {
    const auto former = files.find(path);
    done(writeFile(path, (former == files.end() ? std::string() : former->second) + bytes));
}

void FakeDocuments::removeFile(const std::string& path, Done done) {
    files.erase(path);
    done({});
}

std::string FakeDocuments::pathOf(const std::string& filename) {
    return std::string(kDirectory) + "/Quillmoth/" + filename;
}

std::string FakeDocuments::content(const std::string& filename) const {
    const auto found = files.find(pathOf(filename));
    return found == files.end() ? std::string() : found->second;
}

void FakeDocuments::put(const std::string& filename, const std::string& bytes) {
    directories.insert(folderOf(pathOf(filename)));
    files[pathOf(filename)] = bytes;
}

} // namespace quillmoth::platform
