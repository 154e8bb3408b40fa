#pragma once

#include "Platform/Documents.h"

#include <utility>

namespace quillmoth::platform {

class DiskSync;

/// The user's documents folder and plain files. What is written reaches the disk without
/// holding the main thread.
class FileDocuments final : public Documents {
public:
    /// `folder` is an absolute path.
    FileDocuments(std::string folder, DiskSync& diskSync) : folder_(std::move(folder)), diskSync_(diskSync) {}

    [[nodiscard]] Result<std::string> documentsDirectory(bool create) override;
    [[nodiscard]] bool fileExists(const std::string& path) const override;
    Result<void> createDirectory(const std::string& path) override;
    [[nodiscard]] Result<std::string> readFile(const std::string& path) const override;
    Result<void> writeFile(const std::string& path, const std::string& bytes) override;

private:
    std::string folder_;
    DiskSync& diskSync_;
};

} // namespace quillmoth::platform
