#pragma once

#include "Platform/Documents.h"

#include <cstddef>
#include <map>
#include <set>
#include <string>

namespace quillmoth::platform {

/// Files in memory, with failures that a test can arm.
class FakeDocuments final : public Documents {
public:
    static constexpr const char* kDirectory = "/documents";

    [[nodiscard]] Result<std::string> documentsDirectory(bool create) override;
    [[nodiscard]] bool fileExists(const std::string& path) const override;
    Result<void> createDirectory(const std::string& path) override;
    [[nodiscard]] Result<std::string> readFile(const std::string& path) const override;
    Result<void> writeFile(const std::string& path, const std::string& bytes) override;
    // At once, within the call.
    void saveFile(const std::string& path, std::string bytes, Done done) override;
    void appendToFile(const std::string& path, std::string bytes, Done done) override;
    void removeFile(const std::string& path, Done done) override;

    /// The content of a file in the program's folder of the documents; empty where it is missing.
    [[nodiscard]] std::string content(const std::string& filename) const;
    /// Puts a file into the program's folder.
    void put(const std::string& filename, const std::string& bytes);
    [[nodiscard]] static std::string pathOf(const std::string& filename);

    /// Failures, as long as they are set.
    bool hasNoDirectory = false;
    /// By their paths.
    std::set<std::string> unreadable;
    bool isFolderUnwritable = false;
    bool isDiskFull = false;

    std::map<std::string, std::string> files;
    std::set<std::string> directories{kDirectory};
    /// Writes that succeeded.
    std::size_t writeCount = 0;
};

} // namespace quillmoth::platform
