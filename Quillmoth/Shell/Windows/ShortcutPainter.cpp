#include "Quillmoth/Shell/Windows/ShortcutPainter.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <QPainter>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace quillmoth {

namespace {

constexpr QChar kSpaceBar(0x23B5);
// In parts of the font's size.
constexpr double kSpaceBarWidth = 0.66;
constexpr double kSpaceBarHeight = 0.26;
constexpr double kSpaceBarStroke = 0.085;
constexpr double kSpaceBarBearing = 0.1;

double onWholePixels(double length, double scale) {
    return std::round(length * scale) / scale;
}

/// A bracket that is open above and stands on `origin`. Its lines are whole pixels of the screen.
void drawSpaceBar(QPainter& painter, QPointF origin, double size) {
    const double scale = painter.device()->devicePixelRatioF();
    const double width = onWholePixels(kSpaceBarWidth * size, scale);
    const double height = onWholePixels(kSpaceBarHeight * size, scale);
    const double stroke = std::max(onWholePixels(kSpaceBarStroke * size, scale), 1 / scale);
    const QRectF box(onWholePixels(origin.x(), scale), origin.y() - height, width, height);
    const QBrush brush = painter.pen().brush();
    painter.fillRect(QRectF(box.left(), box.bottom() - stroke, width, stroke), brush);
    painter.fillRect(QRectF(box.left(), box.top(), stroke, height), brush);
    painter.fillRect(QRectF(box.right() - stroke, box.top(), stroke, height), brush);
}

} // namespace

void drawShortcutText(QPainter& painter, const QRectF& place, const QString& text) {
    const QFontMetricsF metrics(painter.font(), painter.device());
    const double size = QFontInfo(painter.font()).pixelSize();
    const double spaceBar = (kSpaceBarWidth + 2 * kSpaceBarBearing) * size;
    const QStringList pieces = text.split(kSpaceBar);
    double width = spaceBar * static_cast<double>(pieces.size() - 1);
    for (const QString& piece : pieces)
        width += metrics.horizontalAdvance(piece);
    const double baseLine = place.center().y() + (metrics.ascent() - metrics.descent()) / 2;
    QPointF origin(place.center().x() - width / 2,
                   onWholePixels(baseLine, painter.device()->devicePixelRatioF()));
    for (qsizetype index = 0; index < pieces.size(); ++index) {
        if (index > 0) {
            drawSpaceBar(painter, origin + QPointF(kSpaceBarBearing * size, 0), size);
            origin.rx() += spaceBar;
        }
        painter.drawText(origin, pieces[index]);
        origin.rx() += metrics.horizontalAdvance(pieces[index]);
    }
}

} // namespace quillmoth
