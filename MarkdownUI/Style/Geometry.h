#pragma once

#include <algorithm>

namespace quillmoth::markdown {

/// Lengths are logical pixels; y grows downwards.
struct Point {
    double x = 0;
    double y = 0;

    bool operator==(const Point&) const = default;
};

struct Size {
    double width = 0;
    double height = 0;

    bool operator==(const Size&) const = default;
};

struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    [[nodiscard]] double right() const { return x + width; }

    [[nodiscard]] double bottom() const { return y + height; }

    /// The left and top edges are inside, the others are not.
    [[nodiscard]] bool contains(Point point) const {
        return point.x >= x && point.x < right() && point.y >= y && point.y < bottom();
    }

    [[nodiscard]] Rect translated(double dx, double dy) const { return {x + dx, y + dy, width, height}; }

    bool operator==(const Rect&) const = default;
};

} // namespace quillmoth::markdown
