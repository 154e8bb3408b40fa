#include "ScrollBar.h"

#include "Foundation/Qt/Transition.h"

#include <QPainter>

#include <algorithm>
#include <chrono>
#include <utility>

namespace quillmoth::markdown {

namespace {

using namespace std::chrono_literals;

constexpr double kBarWidth = 4;
constexpr double kHoveredBarWidth = 6;
constexpr double kBarMargin = 3;
constexpr double kHoveredBarMargin = 2;
constexpr double kBarReach = 10;
constexpr double kLeastThumb = 28;

constexpr std::size_t kBar = 0;

} // namespace

double ScrollBar::Extent::greatestScroll() const {
    return std::max(content - view.height(), 0.0);
}

ScrollBar::ScrollBar(const MarkdownPalette& palette, std::function<void()> changed)
    : palette_(palette), fade_(120ms, std::move(changed)) {}

std::optional<QRectF> ScrollBar::thumb(const Extent& extent) const {
    if (extent.greatestScroll() < 0.5)
        return std::nullopt;
    const double share = fade_.shareOf(kBar);
    const double barWidth = kBarWidth + (kHoveredBarWidth - kBarWidth) * share;
    const double margin = kBarMargin + (kHoveredBarMargin - kBarMargin) * share;
    const double track = extent.view.height() - 2 * kBarMargin;
    const double length =
        std::clamp(track * extent.view.height() / extent.content, std::min(kLeastThumb, track), track);
    const double top = kBarMargin + (track - length) * (extent.scroll / extent.greatestScroll());
    return QRectF(extent.view.width() - margin - barWidth, top, barWidth, length);
}

bool ScrollBar::isAt(const Extent& extent, const QPointF& point) const {
    return point.x() >= extent.view.width() - kBarReach && thumb(extent).has_value();
}

void ScrollBar::setHovered(bool isHovered) {
    if (isHovered != (fade_.shareOf(kBar) > 0))
        fade_.setHovered(kBar, isHovered);
}

void ScrollBar::grab(const Extent& extent, double y) {
    const QRectF bar = thumb(extent).value_or(QRectF());
    const bool isOnThumb = y >= bar.top() && y < bar.bottom();
    grabbedAt_ = isOnThumb ? y - bar.top() : bar.height() / 2;
}

double ScrollBar::scrollAt(const Extent& extent, double y) const {
    const double track = extent.view.height() - 2 * kBarMargin - thumb(extent).value_or(QRectF()).height();
    const double top = y - grabbedAt_.value_or(0) - kBarMargin;
    return track > 0 ? top / track * extent.greatestScroll() : extent.scroll;
}

void ScrollBar::paint(QPainter& painter, const Extent& extent) const {
    const auto bar = thumb(extent);
    if (!bar)
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isGrabbed() ? palette_.thumbDragged
                                 : blended(palette_.thumb, palette_.thumbHovered, fade_.shareOf(kBar)));
    painter.drawRoundedRect(*bar, bar->width() / 2, bar->width() / 2);
}

} // namespace quillmoth::markdown
