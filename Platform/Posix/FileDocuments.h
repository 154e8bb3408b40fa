#pragma once

#include "Platform/Documents.h"
#include "Platform/Posix/FileWriter.h"

#include <utility>

namespace quillmoth::platform {

class MainQueue;

/// The user's documents folder and plain files.
class FileDocuments final : public Documents {
public:
    /// `folder` is an absolute path. `mainQueue` outlives `writer`.
    FileDocuments(std::string folder, FileWriter& writer, MainQueue& mainQueue)
        : folder_(std::move(folder)), writer_(writer), mainQueue_(mainQueue) {}

    [[nodiscard]] Result<std::string> documentsDirectory(bool create) override;
    [[nodiscard]] bool fileExists(const std::string& path) const override;
    Result<void> createDirectory(const std::string& path) override;
    [[nodiscard]] Result<std::string> readFile(const std::string& path) const override;
    Result<void> writeFile(const std::string& path, const std::string& bytes) override;
    void saveFile(const std::string& path, std::string bytes, Done done) override;
    void appendToFile(const std::string& path, std::string bytes, Done done) override;
    void removeFile(const std::string& path, Done done) override;

private:
    [[nodiscard]] FileWriter::Done onMainQueue(Done done);

    std::string folder_;
    FileWriter& writer_;
    MainQueue& mainQueue_;
};

} // namespace quillmoth::platform
