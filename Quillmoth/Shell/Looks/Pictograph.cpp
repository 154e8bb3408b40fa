#include "Quillmoth/Shell/Looks/Pictograph.h"

#include <QFontMetricsF>
#include <QPaintDevice>
#include <QPainter>
#include <QPixmapCache>
#include <QtMath>

#include <cmath>

namespace quillmoth {

namespace {

/// Around the glyphs, which may be larger than the font says.
constexpr int kMargin = 4;
/// In UTF-16 units, more than any emoji has.
constexpr int kLongest = 16;

QPixmap renderPictograph(const QFont& font, const QString& text, const QColor& color, double scale) {
    const QFontMetricsF metrics(font);
    const QSizeF size(metrics.horizontalAdvance(text) + 2 * kMargin, metrics.height() + 2 * kMargin);
    QPixmap pixmap(qCeil(size.width() * scale), qCeil(size.height() * scale));
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(QPointF(kMargin, kMargin + metrics.ascent()), text);
    return pixmap;
}

} // namespace

double drawPictograph(QPainter& painter, const QRectF& place, Qt::Alignment alignment, const QFont& font,
                      const QString& wholeText) {
    const QString text = wholeText.left(kLongest);
    const double scale = painter.device()->devicePixelRatioF();
    const QColor color = painter.pen().color();
    const QString key =
        QStringLiteral("pictograph/%1/%2/%3/%4").arg(font.key()).arg(scale).arg(color.rgba()).arg(text);
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = renderPictograph(font, text, color, scale);
        QPixmapCache::insert(key, pixmap);
    }
    const QSizeF size = pixmap.deviceIndependentSize() - QSizeF(2 * kMargin, 2 * kMargin);
    double left = place.left();
    if (alignment & Qt::AlignHCenter)
        left += (place.width() - size.width()) / 2;
    else if (alignment & Qt::AlignRight)
        left += place.width() - size.width();
    const double top = place.top() + (place.height() - size.height()) / 2;
    // On whole pixels of the device, or it would be blurred.
    const auto whole = [scale](double position) { return std::round(position * scale) / scale; };
    painter.drawPixmap(QPointF(whole(left) - kMargin, whole(top) - kMargin), pixmap);
    return size.width();
}

} // namespace quillmoth
