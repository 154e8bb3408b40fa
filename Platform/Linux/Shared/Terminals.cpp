#include "Platform/Linux/Shared/Terminals.h"

#include "Foundation/ASCII.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

namespace quillmoth::platform {

namespace {

/// Beside those whose names say that they are terminals.
constexpr std::string_view kTerminals[] = {
    "alacritty", "blackbox", "console", "contour", "foot",        "footclient", "ghostty",     "guake",
    "hyper",     "kgx",      "kitty",   "konsole", "putty",       "ptyxis",     "rio",         "rxvt",
    "sakura",    "st",       "tabby",   "termit",  "terminator",  "termite",    "terminology", "tilda",
    "tilix",     "urxvt",    "urxvtd",  "warp",    "wezterm-gui", "yakuake",    "zutty"};

/// Without the domain that some put before their name, and without the kind of terminal behind it.
std::string plainName(std::string_view name) {
    std::string plain = lowercasedASCII(name.substr(name.rfind('.') + 1));
    constexpr std::string_view kColors = "-256color";
    if (plain.ends_with(kColors))
        plain.resize(plain.size() - kColors.size());
    return plain;
}

std::string processName(std::int64_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/comm");
    std::string name;
    std::getline(file, name);
    return name;
}

} // namespace

bool isTerminalName(std::string_view name) {
    const std::string plain = plainName(name);
    // The kernel cuts the names of programs, so the word may stand anywhere.
    return plain.find("terminal") != std::string::npos || plain.ends_with("term") ||
           std::find(std::begin(kTerminals), std::end(kTerminals), plain) != std::end(kTerminals);
}

bool holdsPseudoTerminal(std::int64_t process) {
    std::error_code error;
    const std::filesystem::path folder = "/proc/" + std::to_string(process) + "/fd";
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code closedMeanwhile;
        const std::string target = std::filesystem::read_symlink(entry->path(), closedMeanwhile).string();
        if (target == "/dev/ptmx" || target == "/dev/pts/ptmx")
            return true;
    }
    return false;
}

bool isTerminalProcess(std::int64_t process, const std::function<bool(std::int64_t process)>& hasOtherFocus) {
    return isTerminalName(processName(process)) || (holdsPseudoTerminal(process) && !hasOtherFocus(process));
}

} // namespace quillmoth::platform
