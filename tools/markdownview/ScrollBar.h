#pragma once

#include "MarkdownUI/Qt/HoverFade.h"
#include "MarkdownUI/Qt/MarkdownPalette.h"

#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include <functional>
#include <optional>

class QPainter;

namespace quillmoth::markdown {

/// The bar at the right edge of a view. Main thread.
class ScrollBar {
public:
    /// What the bar shows, in pixels.
    struct Extent {
        QSizeF view;
        double content = 0; ///< height
        double scroll = 0;

        [[nodiscard]] double greatestScroll() const;
    };

    /// The palette outlives the bar. `changed` is called where it is to be painted again.
    ScrollBar(const MarkdownPalette& palette, std::function<void()> changed);

    /// Nothing where all of the content is in sight.
    [[nodiscard]] std::optional<QRectF> thumb(const Extent& extent) const;
    [[nodiscard]] bool isAt(const Extent& extent, const QPointF& point) const;

    void setHovered(bool isHovered);

    /// Takes hold of the thumb at `y`, of its middle where it is elsewhere.
    void grab(const Extent& extent, double y);

    void release() { grabbedAt_.reset(); }

    [[nodiscard]] bool isGrabbed() const { return grabbedAt_.has_value(); }

    /// Where the grabbed thumb scrolls to when the pointer is at `y`.
    [[nodiscard]] double scrollAt(const Extent& extent, double y) const;

    void paint(QPainter& painter, const Extent& extent) const;

private:
    const MarkdownPalette& palette_;
    HoverFade fade_;
    std::optional<double> grabbedAt_; ///< from the thumb's top
};

} // namespace quillmoth::markdown
