#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <sys/stat.h>

namespace quillmoth::test {

/// A folder of a test's own, removed with the object.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "quillmoth-test-XXXXXX").string();
        path_ = mkdtemp(pattern.data());
    }

    ~TemporaryFolder() { std::filesystem::remove_all(path_); }

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] std::string path(const std::string& name = {}) const {
        return name.empty() ? path_.string() : (path_ / name).string();
    }

    /// The names in the folder, in order.
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const auto& entry : std::filesystem::directory_iterator(path_))
            result.push_back(entry.path().filename().string());
        std::sort(result.begin(), result.end());
        return result;
    }

private:
    std::filesystem::path path_;
};

inline std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void setContent(const std::string& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

/// As another process would: a new file renamed over the old one.
inline void replaceContent(const std::string& path, const std::string& content) {
    setContent(path + "~", content);
    std::filesystem::rename(path + "~", path);
}

inline mode_t modeOf(const std::string& path) {
    struct stat status {};

    stat(path.c_str(), &status);
    return status.st_mode & 07777;
}

} // namespace quillmoth::test
