#pragma once

#include <cstdint>
#include <optional>

namespace quillmoth::platform {

/// In the coordinates of the desktop, which are the toolkit's.
struct DesktopArea {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;

    friend bool operator==(const DesktopArea&, const DesktopArea&) = default;
};

/// Where windows cannot place themselves, this has it done: the panel comes above all others, at its place,
/// with the keyboard. Main thread.
class PanelPlacement {
public:
    virtual ~PanelPlacement() = default;

    /// The panel is about to be shown, or to be brought to the front where it is shown.
    virtual void place(const DesktopArea& wanted) = 0;

    /// Where it is now; none where it is not shown.
    [[nodiscard]] virtual std::optional<DesktopArea> area() = 0;

    /// Where the pointer is, without width and height; none where that is not known.
    [[nodiscard]] virtual std::optional<DesktopArea> pointer() = 0;
};

} // namespace quillmoth::platform
