#include "Quillmoth/Shell/Panel/PanelGeometry.h"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace quillmoth {

namespace {

constexpr int kSide = 3;
constexpr int kCorner = 12;

std::int64_t area(const QRect& rectangle) {
    return rectangle.isEmpty() ? 0 : static_cast<std::int64_t>(rectangle.width()) * rectangle.height();
}

QPointF pixelAt(QPoint position, const ScaledScreen& screen) {
    const QPoint origin = screen.place.topLeft();
    return QPointF(origin) + QPointF(position - origin) * screen.scale;
}

} // namespace

std::string writeFrame(const QRect& frame) {
    std::ostringstream text;
    text << frame.x() << ' ' << frame.y() << ' ' << frame.width() << ' ' << frame.height();
    return text.str();
}

std::optional<QRect> readFrame(const std::string& text) {
    std::istringstream stream(text);
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    if (!(stream >> x >> y >> width >> height) || width <= 0 || height <= 0)
        return std::nullopt;
    return QRect(x, y, width, height);
}

QRect broughtBack(const QRect& frame, QSize least, const QList<QRect>& screens) {
    QRect moved(frame.topLeft(), frame.size().expandedTo(least));
    if (screens.isEmpty())
        return moved;
    const QRect& screen =
        *std::max_element(screens.begin(), screens.end(),
                          [&](const QRect& a, const QRect& b) { return area(a & frame) < area(b & frame); });
    moved.setSize(moved.size().boundedTo(screen.size()));
    moved.moveLeft(std::clamp(moved.left(), screen.left(), screen.right() + 1 - moved.width()));
    moved.moveTop(std::clamp(moved.top(), screen.top(), screen.bottom() + 1 - moved.height()));
    return moved;
}

QRect centered(QSize size, QPoint pointer, const QList<QRect>& screens) {
    QRect frame({}, size);
    if (screens.isEmpty())
        return frame;
    const auto pointed = std::find_if(screens.begin(), screens.end(),
                                      [&](const QRect& screen) { return screen.contains(pointer); });
    frame.moveCenter(pointed == screens.end() ? screens.front().center() : pointed->center());
    return frame;
}

QPoint heldAt(QPoint grip, QPoint pointer, QSize size, const QList<ScaledScreen>& screens) {
    const auto pointed = std::find_if(screens.begin(), screens.end(), [&](const ScaledScreen& screen) {
        return screen.place.contains(pointer);
    });
    if (pointed == screens.end())
        return pointer - grip;
    const QPointF pixel = pixelAt(pointer, *pointed);
    for (const ScaledScreen& screen : screens) {
        const QPointF origin = screen.place.topLeft();
        const QPoint place = (origin + (pixel - origin) / screen.scale - QPointF(grip)).toPoint();
        if (screen.place.contains(QRect(place, size).center()))
            return place;
    }
    return pointer - grip;
}

Qt::Edges edgesAt(QPoint position, QSize size) {
    const int right = size.width() - 1 - position.x();
    const int bottom = size.height() - 1 - position.y();
    const bool corner = std::min(position.x(), right) < kCorner && std::min(position.y(), bottom) < kCorner;
    const int reach = corner ? kCorner : kSide;
    Qt::Edges edges;
    edges.setFlag(Qt::LeftEdge, position.x() < reach);
    edges.setFlag(Qt::RightEdge, right < reach);
    edges.setFlag(Qt::TopEdge, position.y() < reach);
    edges.setFlag(Qt::BottomEdge, bottom < reach);
    return edges;
}

QRect resized(const QRect& frame, Qt::Edges edges, QPoint by, QSize least) {
    QRect result = frame;
    if (edges & Qt::LeftEdge)
        result.setLeft(std::min(frame.left() + by.x(), frame.right() + 1 - least.width()));
    if (edges & Qt::RightEdge)
        result.setRight(std::max(frame.right() + by.x(), frame.left() - 1 + least.width()));
    if (edges & Qt::TopEdge)
        result.setTop(std::min(frame.top() + by.y(), frame.bottom() + 1 - least.height()));
    if (edges & Qt::BottomEdge)
        result.setBottom(std::max(frame.bottom() + by.y(), frame.top() - 1 + least.height()));
    return result;
}

QList<int> cornerSteps(int radius) {
    QList<int> steps;
    for (int row = 0; row < radius; ++row) {
        const double height = radius - row - 0.5;
        const double reach = radius - std::sqrt(radius * radius - height * height);
        // The first pixel whose middle lies within the circle.
        steps.append(std::max(0, static_cast<int>(std::ceil(reach - 0.5))));
    }
    return steps;
}

QRegion panelMask(QSize size, int radius) {
    QRegion mask(0, radius, size.width(), size.height() - 2 * radius);
    const QList<int> steps = cornerSteps(radius);
    for (int row = 0; row < steps.size(); ++row) {
        const QRect line(steps[row], row, size.width() - 2 * steps[row], 1);
        mask += line;
        mask += line.translated(0, size.height() - 1 - 2 * row);
    }
    return mask;
}

} // namespace quillmoth
