#include "Quillmoth/Prompts/DocumentFolder.h"

#include "Foundation/Log.h"
#include "Platform/Documents.h"

namespace quillmoth {

namespace {

constexpr const char* kFolder = "/Quillmoth";
/// So many damaged files are kept, and no more written over.
constexpr int kMostDamaged = 1000;

} // namespace

Result<std::string> documentPath(const std::string& filename, platform::Documents& documents) {
    const auto directory = documents.documentsDirectory(false);
    if (!directory)
        return directory.error();
    return *directory + kFolder + "/" + filename;
}

Result<std::string> makeDocumentFolder(platform::Documents& documents) {
    const auto directory = documents.documentsDirectory(true);
    if (!directory)
        return directory.error();
    const std::string folder = *directory + kFolder;
    if (documents.fileExists(folder)) {
        logLine("Already dictionary created.");
    } else if (auto made = documents.createDirectory(folder); !made) {
        return made.error();
    }
    return folder;
}

Result<std::string> keepDamaged(const std::string& filename, const std::string& bytes,
                                platform::Documents& documents) {
    const auto path = documentPath(filename, documents);
    if (!path || bytes.empty())
        return path ? Result(std::string()) : path.error();
    const std::string damaged = *path + ".damaged-";
    int number = 1;
    while (number < kMostDamaged && documents.fileExists(damaged + std::to_string(number))) {
        const std::string former = damaged + std::to_string(number++);
        const auto kept = documents.readFile(former);
        if (kept && *kept == bytes)
            return former;
    }
    if (number == kMostDamaged)
        return Error{"There are too many damaged files beside \"" + *path + "\""};
    const std::string copy = damaged + std::to_string(number);
    if (const auto written = documents.writeFile(copy, bytes); !written)
        return written.error();
    logLine("What it held is kept in \"" + copy + "\".");
    return copy;
}

} // namespace quillmoth
