#pragma once

#include "Platform/Linux/X11/Server/X11Connection.h"

#include <cstdint>
#include <string>
#include <vector>

/// Which clients of the X server belong to one application.
namespace quillmoth::platform {

/// An application, known by one of its windows.
struct X11Application {
    xcb_window_t window = XCB_WINDOW_NONE;
    /// What the window says (_NET_WM_PID) and what the server knows, which differ in containers.
    std::vector<std::int64_t> processes = {};
};

/// The one whose window is active; its window is XCB_WINDOW_NONE where there is none.
[[nodiscard]] X11Application frontApplication(X11Connection& connection);

/// Whether `window` is of the application's own client, or of one in its processes or in those that these
/// have started. Any thread that owns the connection.
[[nodiscard]] bool isClientOf(xcb_connection_t* connection, const X11Application& application,
                              xcb_window_t window);

/// Whether `window` belongs to a client of the application as above that is not an application of its own, to
/// be seen by a window that the window manager lists.
[[nodiscard]] bool isPartOf(X11Connection& connection, const X11Application& application,
                            xcb_window_t window);

/// The two names of WM_CLASS, the instance and the class; empty where the window has none.
struct X11ClassNames {
    std::string instance = {};
    std::string classOfAll = {};
};

[[nodiscard]] X11ClassNames classNamesOf(X11Connection& connection, xcb_window_t window);

} // namespace quillmoth::platform
