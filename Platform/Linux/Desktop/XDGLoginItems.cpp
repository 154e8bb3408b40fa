#include "Platform/Linux/Desktop/XDGLoginItems.h"

#include "Platform/Linux/Desktop/EntryFile.h"

#include <cstdlib>
#include <fstream>
#include <string_view>
#include <system_error>
#include <utility>

namespace quillmoth::platform {

namespace {

namespace fs = std::filesystem;

bool switchesOff(std::string_view line) {
    while (!line.empty() && (line.back() == ' ' || line.back() == '\r'))
        line.remove_suffix(1);
    return line == "Hidden=true" || line == "X-GNOME-Autostart-enabled=false";
}

std::string entry(const std::string& command) {
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Version=1.4\n"
           "Name=Quillmoth\n"
           "Comment=Ask an AI model about the text that is selected in any application\n"
           "Icon=quillmoth\n"
           "Exec=" +
           quotedForExec(command) +
           "\n"
           "Terminal=false\n"
           "StartupNotify=false\n";
}

Error failure(const std::string& what, const std::error_code& reason) {
    return {what + ": " + reason.message()};
}

} // namespace

std::filesystem::path autostartFolder() {
    // Nothing in this process changes its environment.
    const char* config = std::getenv("XDG_CONFIG_HOME"); // NOLINT(concurrency-mt-unsafe)
    if (config != nullptr && *config == '/')
        return fs::path(config) / "autostart";
    const char* home = std::getenv("HOME"); // NOLINT(concurrency-mt-unsafe)
    return fs::path(home != nullptr ? home : "/") / ".config" / "autostart";
}

std::string quotedForExec(const std::string& path) {
    // Some readers of these files know no quotes.
    constexpr std::string_view kPlain =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789/._-+@:,";
    if (!path.empty() && path.find_first_not_of(kPlain) == std::string::npos)
        return path;
    std::string quoted = "\"";
    for (const char c : path) {
        if (c == '%')
            quoted += '%'; // Doubled, or it would begin a field code.
        else if (c == '\\')
            quoted += "\\\\\\"; // Once for the argument, and both once more for the string value.
        else if (c == '"' || c == '`' || c == '$')
            quoted += "\\\\";
        quoted += c;
    }
    return quoted += '"';
}

XDGLoginItems::XDGLoginItems(std::filesystem::path folder, std::string command)
    : folder_(std::move(folder)), command_(std::move(command)) {}

std::filesystem::path XDGLoginItems::file(const std::string& identifier) const {
    return folder_ / (identifier + ".desktop");
}

bool XDGLoginItems::isEnabled(const std::string& identifier) const {
    std::ifstream stream(file(identifier));
    if (!stream)
        return false;
    for (std::string line; std::getline(stream, line);) {
        if (switchesOff(line))
            return false;
    }
    return true;
}

Result<void> XDGLoginItems::registerItem(const std::string& identifier) {
    return writeEntryFile(file(identifier), entry(command_));
}

Result<void> XDGLoginItems::unregisterItem(const std::string& identifier) {
    std::error_code error;
    fs::remove(file(identifier), error);
    if (error)
        return failure("Could not remove " + file(identifier).string(), error);
    return {};
}

} // namespace quillmoth::platform
