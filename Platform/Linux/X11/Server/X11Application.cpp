#include "Platform/Linux/X11/Server/X11Application.h"

#include "Platform/Linux/X11/Server/X11Windows.h"

#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <optional>
#include <string_view>

namespace quillmoth::platform {

namespace {

/// A helper of a helper of a helper; no more, whatever the table of processes says.
constexpr int kMostGenerations = 8;

bool isOfSameClient(xcb_connection_t* connection, xcb_window_t one, xcb_window_t other) {
    const std::uint32_t own = ~xcb_get_setup(connection)->resource_id_mask;
    return (one & own) == (other & own);
}

/// The fourth field of the kernel's line on a process; the second one is a name in brackets, which may hold
/// anything.
std::int64_t parentOf(std::int64_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string line;
    std::getline(file, line);
    const std::size_t end = line.rfind(')');
    constexpr std::size_t kStateLength = 4;
    if (end == std::string::npos || end + kStateLength >= line.size())
        return 0;
    return std::strtoll(line.c_str() + end + kStateLength, nullptr, 10);
}

bool isAmong(const std::vector<std::int64_t>& processes, std::int64_t process) {
    return std::find(processes.begin(), processes.end(), process) != processes.end();
}

bool descendsFrom(const std::vector<std::int64_t>& processes, std::int64_t process) {
    for (int generation = 0; generation < kMostGenerations && process > 1; ++generation) {
        if (isAmong(processes, process))
            return true;
        process = parentOf(process);
    }
    return false;
}

} // namespace

X11Application frontApplication(X11Connection& connection) {
    X11Application application{.window = activeWindow(connection)};
    if (application.window == XCB_WINDOW_NONE)
        return application;
    const auto told = connection.numbers(application.window, "_NET_WM_PID");
    if (!told.empty() && told.front() != 0)
        application.processes.push_back(told.front());
    const auto known = clientProcessIdentifier(connection.get(), application.window);
    if (known && !isAmong(application.processes, *known))
        application.processes.push_back(*known);
    return application;
}

bool isClientOf(xcb_connection_t* connection, const X11Application& application, xcb_window_t window) {
    if (application.window == XCB_WINDOW_NONE || window == XCB_WINDOW_NONE)
        return false;
    if (isOfSameClient(connection, application.window, window))
        return true;
    const auto process = clientProcessIdentifier(connection, window);
    return process && *process != getpid() && descendsFrom(application.processes, *process);
}

bool isPartOf(X11Connection& connection, const X11Application& application, xcb_window_t window) {
    auto* server = connection.get();
    if (!isClientOf(server, application, window))
        return false;
    const auto process = clientProcessIdentifier(server, window);
    if (isOfSameClient(server, application.window, window) ||
        isAmong(application.processes, process.value_or(0)))
        return true;
    const auto listed = connection.numbers(connection.root(), "_NET_CLIENT_LIST");
    return std::none_of(listed.begin(), listed.end(),
                        [&](xcb_window_t other) { return isOfSameClient(server, other, window); });
}

X11ClassNames classNamesOf(X11Connection& connection, xcb_window_t window) {
    const std::string names = connection.bytes(window, "WM_CLASS");
    const std::size_t first = std::min(names.find('\0'), names.size());
    const std::size_t second = std::min(first + 1, names.size());
    return {.instance = names.substr(0, first),
            .classOfAll = names.substr(second, names.find('\0', second) - second)};
}

} // namespace quillmoth::platform
