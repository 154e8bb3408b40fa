#include "LampPicture.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPolygonF>

#include <cmath>

namespace quillmoth {

QByteArray lampPicture() {
    QImage image(520, 190, QImage::Format_RGB32);
    image.fill(QColor(0x14, 0x18, 0x34));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF middle(260, 95);
    for (const int radius : {80, 52, 26}) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0xFF, 0xD6, 0x7A, radius == 26 ? 255 : 60));
        painter.drawEllipse(middle, radius, radius);
    }
    QPolygonF way;
    for (double angle = 0; angle < 20; angle += 0.1)
        way << middle + QPointF(std::cos(angle) * 2.6, std::sin(angle)) * (88 - 3.2 * angle);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(0xF2, 0xF2, 0xF7), 2, Qt::DashLine));
    painter.drawPolyline(way);
    painter.end();
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return data;
}

} // namespace quillmoth
