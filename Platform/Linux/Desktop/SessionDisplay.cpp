#include "Platform/Linux/Desktop/SessionDisplay.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <string_view>
#include <system_error>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace quillmoth::platform {

namespace {

namespace fs = std::filesystem;

std::string variable(const char* name) {
    // Nothing in this process changes its environment at this time.
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value != nullptr ? value : "";
}

bool canConnect(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path)
        return false;
    std::copy(path.begin(), path.end(), static_cast<char*>(address.sun_path));
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0)
        return false;
    const auto* generic = reinterpret_cast<const sockaddr*>(&address);
    const bool isConnected = connect(descriptor, generic, sizeof address) == 0;
    close(descriptor);
    return isConnected;
}

bool hasWaylandPlugin(const std::vector<fs::path>& pluginFolders) {
    for (const fs::path& folder : pluginFolders) {
        std::error_code error;
        for (fs::directory_iterator file(folder / "platforms", error), end; !error && file != end;
             file.increment(error)) {
            if (file->path().filename().string().starts_with("libqwayland"))
                return true;
        }
    }
    return false;
}

/// What keeps the Wayland display from being used.
std::string waylandProblem(const std::vector<fs::path>& pluginFolders) {
    const std::string name = variable("WAYLAND_DISPLAY");
    // As Wayland's own library finds the socket.
    if (!canConnect(name.starts_with('/') ? name : variable("XDG_RUNTIME_DIR") + '/' + name))
        return "the Wayland display \"" + name +
               "\" does not answer; check WAYLAND_DISPLAY and XDG_RUNTIME_DIR";
    if (!hasWaylandPlugin(pluginFolders))
        return "the display is Wayland, for which Qt lacks its plugin; install the package qt6-wayland, or "
               "xwayland for an X server beside it";
    return {};
}

/// None where the display can be used.
std::string problemOf(std::string_view plugin, const std::vector<fs::path>& pluginFolders,
                      const std::function<bool()>& hasXServer) {
    if (plugin.starts_with("xcb") && !hasXServer())
        return "the X server \"" + variable("DISPLAY") + "\" does not answer; check DISPLAY and XAUTHORITY";
    return plugin.starts_with("wayland") ? waylandProblem(pluginFolders) : std::string();
}

} // namespace

bool isWaylandSession() {
    const std::string type = variable("XDG_SESSION_TYPE");
    return type == "wayland" || (type != "x11" && !variable("WAYLAND_DISPLAY").empty());
}

Result<std::string> findSessionDisplay(const std::vector<fs::path>& pluginFolders,
                                       const std::function<bool()>& hasXServer) {
    const std::string chosen = variable("QT_QPA_PLATFORM");
    std::string candidates = chosen;
    if (chosen.empty()) {
        const std::string x11 = variable("DISPLAY").empty() ? "" : "xcb;";
        const std::string wayland = variable("WAYLAND_DISPLAY").empty() ? "" : "wayland;";
        candidates = isWaylandSession() ? wayland + x11 : x11 + wayland;
    }
    if (candidates.empty())
        return Error{"neither DISPLAY nor WAYLAND_DISPLAY is set; start Quillmoth in a desktop session"};
    std::string problems;
    std::istringstream list(candidates);
    for (std::string plugin; std::getline(list, plugin, ';');) {
        const std::string problem = problemOf(plugin, pluginFolders, hasXServer);
        if (problem.empty())
            return chosen.empty() ? plugin : chosen;
        problems += (problems.empty() ? "" : "; and ") + problem;
    }
    return Error{problems};
}

} // namespace quillmoth::platform
