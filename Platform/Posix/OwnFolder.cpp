#include "Platform/Posix/OwnFolder.h"

#include "Foundation/Log.h"
#include "Platform/UserDefaults.h"

#include <chrono>
#include <filesystem>
#include <set>
#include <sstream>
#include <string_view>
#include <system_error>
#include <vector>

#include <sys/stat.h>

namespace quillmoth::platform {

namespace {

namespace fs = std::filesystem;

// The names of the files narrowed already, one a line.
constexpr const char* kNarrowedKey = "narrowedFiles";
constexpr fs::perms kForOthers = fs::perms::group_all | fs::perms::others_all;
// Another start of this program may be writing one this very moment.
constexpr auto kStaleAfter = std::chrono::minutes(10);

std::set<std::string> narrowedFiles(const UserDefaults& defaults) {
    std::istringstream lines(defaults.string(kNarrowedKey).value_or(""));
    std::set<std::string> names;
    for (std::string line; std::getline(lines, line);)
        names.insert(line);
    return names;
}

void remember(const std::set<std::string>& names, UserDefaults& defaults) {
    std::string lines;
    for (const std::string& name : names)
        lines += name + '\n';
    defaults.set(kNarrowedKey, lines);
}

/// Through symbolic links. False where nothing had to be done, or could be.
bool narrow(const fs::path& path) {
    std::error_code error;
    const auto status = fs::status(path, error);
    if (error || (status.permissions() & kForOthers) == fs::perms::none)
        return false;
    fs::permissions(path, kForOthers, fs::perm_options::remove, error);
    if (error)
        logLine("Others may be able to read \"" + path.string() + "\": " + error.message());
    return !error;
}

bool isStaleTemporaryFile(const fs::path& path) {
    const std::string name = path.filename().string();
    std::error_code error;
    const auto written = fs::last_write_time(path, error);
    return !error && name.starts_with(".quillmoth-") && name.ends_with(".tmp") &&
           fs::file_time_type::clock::now() - written > kStaleAfter;
}

} // namespace

void putFolderInOrder(const std::string& folder, UserDefaults& defaults) {
    std::error_code error;
    std::vector<fs::path> paths{fs::path(folder)};
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
        paths.push_back(entry->path());
    auto narrowed = narrowedFiles(defaults);
    const std::size_t former = narrowed.size();
    for (const fs::path& path : paths) {
        std::error_code ignored;
        if (isStaleTemporaryFile(path))
            fs::remove(path, ignored);
        else if (!narrowed.contains(path.string()) && narrow(path))
            narrowed.insert(path.string());
    }
    if (narrowed.size() > former)
        remember(narrowed, defaults);
}

} // namespace quillmoth::platform
