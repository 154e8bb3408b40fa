#pragma once

#include <QList>
#include <QRect>
#include <QRegion>
#include <Qt>

#include <optional>
#include <string>

namespace quillmoth {

/// A frame as it is kept in the settings: "x y width height".
[[nodiscard]] std::string writeFrame(const QRect& frame);
/// None for a text that is no frame.
[[nodiscard]] std::optional<QRect> readFrame(const std::string& text);

/// Where a panel is shown for which the user chose `frame`: not smaller than `least`, but all of it on the
/// one of `screens` that shows most of the frame, on the first one where none shows any.
[[nodiscard]] QRect broughtBack(const QRect& frame, QSize least, const QList<QRect>& screens);

/// A frame in the middle of the one of `screens` with the pointer, of the first one where none has it.
[[nodiscard]] QRect centered(QSize size, QPoint pointer, const QList<QRect>& screens);

/// A screen as the toolkit sees it: it begins at its place in pixels, and is as large as its pixels divided
/// by its scale.
struct ScaledScreen {
    QRect place;
    double scale = 1;
};

/// Where a panel of `size` is to be moved that the pointer holds at `grip` of it. A place between the
/// screens' coordinates, as there are beside each one of a scale above 1, would be taken for one of another
/// screen; so it is told in those of the screen that gets the panel's middle.
[[nodiscard]] QPoint heldAt(QPoint grip, QPoint pointer, QSize size, const QList<ScaledScreen>& screens);

/// The edges that a press at `position` of a panel drags; none in its inside.
[[nodiscard]] Qt::Edges edgesAt(QPoint position, QSize size);

/// `frame` with `edges` dragged by `by`, no smaller than `least`: the opposite edges stay.
[[nodiscard]] QRect resized(const QRect& frame, Qt::Edges edges, QPoint by, QSize least);

/// How far the pixel rows of a rounded corner are cut in, from the top.
[[nodiscard]] QList<int> cornerSteps(int radius);

/// The pixels of a panel where nothing can be blended.
[[nodiscard]] QRegion panelMask(QSize size, int radius);

} // namespace quillmoth
