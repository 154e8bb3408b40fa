#include "Platform/Linux/AtSpi/RestartNeeds.h"

#include <algorithm>
#include <fstream>
#include <set>
#include <string_view>
#include <unistd.h>

namespace quillmoth::platform {

namespace {

namespace fs = std::filesystem;

bool isProcess(const fs::path& folder) {
    const std::string name = folder.filename();
    return std::all_of(name.begin(), name.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::string contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The engine's resources lie beside every program that is built on it.
bool isOnChromium(const fs::path& process) {
    std::error_code error;
    const fs::path program = fs::read_symlink(process / "exe", error);
    return !error && fs::exists(program.parent_path() / "chrome_100_percent.pak", error);
}

bool isOnQt6(const fs::path& process) {
    return contentOf(process / "maps").find("/libQt6Gui.so") != std::string::npos;
}

/// Such programs start several processes of their own, which say what they are for.
bool isHelper(const fs::path& process) {
    return contentOf(process / "cmdline").find("--type=") != std::string::npos;
}

std::string nameOf(const fs::path& process) {
    std::string name = contentOf(process / "comm");
    while (!name.empty() && name.back() == '\n')
        name.pop_back();
    return name;
}

} // namespace

std::vector<std::string> programsToRestart(const fs::path& processes) {
    std::set<std::string> names;
    std::error_code error;
    const std::string self = std::to_string(getpid());
    for (const auto& entry : fs::directory_iterator(processes, error)) {
        const fs::path& process = entry.path();
        if (!isProcess(process) || process.filename() == self)
            continue;
        if ((isOnChromium(process) || isOnQt6(process)) && !isHelper(process))
            names.insert(nameOf(process));
    }
    return {names.begin(), names.end()};
}

} // namespace quillmoth::platform
