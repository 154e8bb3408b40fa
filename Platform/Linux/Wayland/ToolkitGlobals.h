#pragma once

#include <cstdint>

struct wl_display;
struct wl_event_queue;
struct wl_interface;
struct wl_surface;
class QWindow;

/// What the toolkit has of the compositor. Main thread.
namespace quillmoth::platform {

/// The connection of the toolkit; null where it does not run on Wayland.
[[nodiscard]] wl_display* toolkitsDisplay();

/// The window's surface; null where it has none at this time.
[[nodiscard]] wl_surface* toolkitsSurface(QWindow* window);

/// The compositor's object of that kind, of `version` or less, on the toolkit's connection; null where it
/// offers none. Its events come to `queue`.
[[nodiscard]] void* boundOnToolkitsDisplay(const wl_interface& interface, std::uint32_t version,
                                           wl_event_queue* queue);

} // namespace quillmoth::platform
