#pragma once

#include "Platform/Documents.h"

namespace quillmoth::platform {

class DiskSync;

/// The documents folder of the XDG user directories and plain files. What is written reaches the disk without
/// holding the main thread.
class FileDocuments final : public Documents {
public:
    explicit FileDocuments(DiskSync& diskSync) : diskSync_(diskSync) {}

    [[nodiscard]] Result<std::string> documentsDirectory(bool create) override;
    [[nodiscard]] bool fileExists(const std::string& path) const override;
    Result<void> createDirectory(const std::string& path) override;
    [[nodiscard]] Result<std::string> readFile(const std::string& path) const override;
    Result<void> writeFile(const std::string& path, const std::string& bytes) override;

private:
    DiskSync& diskSync_;
};

} // namespace quillmoth::platform
