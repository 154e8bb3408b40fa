#include "Platform/Linux/AtSpi/RestartNeeds.h"

#include "Foundation/ASCII.h"

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>
#include <string_view>
#include <unistd.h>

namespace quillmoth::platform {

namespace {

namespace fs = std::filesystem;

bool isProcess(const fs::path& folder) {
    const std::string name = folder.filename();
    return std::all_of(name.begin(), name.end(), isASCIIDigit);
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

/// What was set in the environment that the process started with; empty where that may not be read.
std::string startedWith(const fs::path& process, std::string_view variable) {
    std::istringstream environment(contentOf(process / "environ"));
    for (std::string entry; std::getline(environment, entry, '\0');) {
        if (entry.starts_with(variable) && entry.substr(variable.size()).starts_with('='))
            return entry.substr(variable.size() + 1);
    }
    return {};
}

/// The name of an X display, without the number of a screen.
std::string withoutScreen(const std::string& display) {
    const auto colon = display.rfind(':');
    const auto point = colon == std::string::npos ? colon : display.find('.', colon);
    return display.substr(0, point);
}

bool isOnDesktop(const fs::path& process, const std::string& display) {
    const auto theirs = startedWith(process, "DISPLAY");
    if (theirs.empty())
        return !startedWith(process, "WAYLAND_DISPLAY").empty();
    return display.empty() || withoutScreen(theirs) == withoutScreen(display);
}

std::string nameOf(const fs::path& process) {
    // The kernel cuts the name.
    constexpr std::size_t kLongestName = 15;
    std::string name = contentOf(process / "comm");
    while (!name.empty() && name.back() == '\n')
        name.pop_back();
    std::error_code error;
    const std::string program = fs::read_symlink(process / "exe", error).filename();
    return name.size() >= kLongestName && program.starts_with(name) ? program : name;
}

} // namespace

std::vector<std::string> programsToRestart(const std::string& display, const fs::path& processes) {
    std::set<std::string> names;
    std::error_code error;
    const std::string self = std::to_string(getpid());
    for (fs::directory_iterator entry(processes, error), end; !error && entry != end;
         entry.increment(error)) {
        const fs::path& process = entry->path();
        if (!isProcess(process) || process.filename() == self)
            continue;
        if ((isOnChromium(process) || isOnQt6(process)) && !isHelper(process) &&
            isOnDesktop(process, display))
            names.insert(nameOf(process));
    }
    return {names.begin(), names.end()};
}

} // namespace quillmoth::platform
