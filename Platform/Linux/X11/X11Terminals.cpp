#include "Platform/Linux/X11/X11Terminals.h"

#include "Foundation/ASCII.h"
#include "Platform/Linux/X11/Server/X11Application.h"
#include "Platform/Linux/X11/Server/X11Reply.h"
#include "Platform/Linux/X11/Server/X11Windows.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

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

bool hasTerminalClass(X11Connection& connection, xcb_window_t window) {
    const X11ClassNames names = classNamesOf(connection, window);
    return isTerminalName(names.instance) || isTerminalName(names.classOfAll);
}

std::string processName(std::int64_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/comm");
    std::string name;
    std::getline(file, name);
    return name;
}

/// From the one with the input focus outwards.
std::vector<xcb_window_t> focusedWindows(X11Connection& connection) {
    auto* server = connection.get();
    const auto focus = owned(xcb_get_input_focus_reply(server, xcb_get_input_focus(server), nullptr));
    if (!focus || focus->focus == XCB_INPUT_FOCUS_NONE)
        return {};
    if (focus->focus == XCB_INPUT_FOCUS_POINTER_ROOT)
        return windowsUnderPointer(connection);
    std::vector<xcb_window_t> windows;
    for (auto window = focus->focus; window != 0 && window != connection.root();) {
        windows.push_back(window);
        const auto tree = owned(xcb_query_tree_reply(server, xcb_query_tree(server, window), nullptr));
        window = tree ? tree->parent : 0;
    }
    return windows;
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

std::optional<std::int64_t> terminalInFront(X11Connection& connection,
                                            const std::function<bool(std::int64_t process)>& hasOtherFocus) {
    auto windows = focusedWindows(connection);
    if (const auto active = activeWindow(connection); active != 0)
        windows.insert(windows.begin(), active);
    for (const auto window : windows) {
        if (hasTerminalClass(connection, window))
            return clientProcessIdentifier(connection.get(), window).value_or(0);
    }
    // The window manager's frame is among them too, but what it has in front stands before that.
    const auto process =
        windows.empty() ? std::nullopt : clientProcessIdentifier(connection.get(), windows.front());
    if (!process)
        return std::nullopt;
    const bool isTerminal =
        isTerminalName(processName(*process)) || (holdsPseudoTerminal(*process) && !hasOtherFocus(*process));
    return isTerminal ? process : std::nullopt;
}

} // namespace quillmoth::platform
