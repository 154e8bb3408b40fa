#pragma once

#include "Platform/Linux/X11/Server/X11Connection.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Whose a window or a selection is.
namespace quillmoth::platform {

/// The process at the other end of the client's connection, by the X-Resource extension 1.2; none for a
/// client of another machine.
[[nodiscard]] std::optional<std::int64_t> clientProcessIdentifier(xcb_connection_t* connection,
                                                                  xcb_window_t window);

/// The window that owns the selection; XCB_WINDOW_NONE for none.
[[nodiscard]] xcb_window_t selectionOwner(xcb_connection_t* connection, xcb_atom_t selection);

/// What the window itself says (_NET_WM_PID), otherwise clientProcessIdentifier.
[[nodiscard]] std::optional<std::int64_t> windowProcessIdentifier(X11Connection& connection,
                                                                  xcb_window_t window);

/// The window manager's active window; 0 for none.
[[nodiscard]] xcb_window_t activeWindow(X11Connection& connection);

/// The windows under the pointer, from a child of the root window inwards.
[[nodiscard]] std::vector<xcb_window_t> windowsUnderPointer(X11Connection& connection);

/// Whether `window` is `owner`, or has been opened on its behalf (WM_TRANSIENT_FOR), as menus, pop-ups and
/// dialogs are.
[[nodiscard]] bool belongsTo(X11Connection& connection, xcb_window_t window, xcb_window_t owner);

/// Whether the pointer is in `owner` or in what belongs to it.
[[nodiscard]] bool isPointed(X11Connection& connection, xcb_window_t owner);

/// True for the candidate windows of input methods and for keyboards on the screen: they write into the
/// window that has the keyboard.
[[nodiscard]] bool belongsToInputMethod(X11Connection& connection, xcb_window_t window);

} // namespace quillmoth::platform
