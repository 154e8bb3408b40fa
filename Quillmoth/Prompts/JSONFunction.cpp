#include "Quillmoth/Prompts/JSONFunction.h"

#include "Foundation/FatalError.h"
#include "Platform/Bundle.h"
#include "Platform/Documents.h"

#include <utility>

namespace quillmoth::jsonFunction {

namespace {

constexpr const char* kFolder = "/Quillmoth";

} // namespace

std::string load(const std::string& filename, const platform::Bundle& bundle) {
    const auto url = bundle.urlForResource(filename);
    if (!url)
        fatalError("Couldn't find " + filename + " in main bundle.");
    auto bytes = bundle.read(*url);
    if (!bytes)
        fatalError("Couldn't load " + filename + " from main bundle:\n" + bytes.error().description);
    return std::move(*bytes);
}

Result<std::string> readDocument(const std::string& filename, platform::Documents& documents) {
    const auto directory = documents.documentsDirectory(false);
    if (!directory)
        return directory.error();
    return documents.readFile(*directory + kFolder + "/" + filename);
}

bool documentExists(const std::string& filename, platform::Documents& documents) {
    const auto directory = documents.documentsDirectory(false);
    return directory && documents.fileExists(*directory + kFolder + "/" + filename);
}

std::string keepAside(const std::string& filename, const std::string& bytes, platform::Documents& documents) {
    const auto directory = documents.documentsDirectory(false);
    if (!directory || bytes.empty())
        return {};
    const std::string damaged = *directory + kFolder + "/" + filename + ".damaged-";
    int number = 1;
    while (documents.fileExists(damaged + std::to_string(number))) {
        const std::string path = damaged + std::to_string(number++);
        const auto kept = documents.readFile(path);
        if (kept && *kept == bytes)
            return path;
    }
    const std::string path = damaged + std::to_string(number);
    if (!documents.writeFile(path, bytes))
        return {};
    logLine("What it held is kept in \"" + path + "\".");
    return path;
}

Result<void> writeDocument(const std::string& filename, const Result<std::string>& json,
                           platform::Documents& documents) {
    const auto directory = documents.documentsDirectory(true);
    if (!directory)
        return directory.error();
    const std::string folder = *directory + kFolder;
    if (documents.fileExists(folder)) {
        logLine("Already dictionary created.");
    } else if (auto made = documents.createDirectory(folder); !made) {
        return made;
    }
    if (!json)
        return json.error();
    return documents.writeFile(folder + "/" + filename, *json);
}

} // namespace quillmoth::jsonFunction
