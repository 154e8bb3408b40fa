#include "Foundation/Qt/Symbols.h"

#include <QColor>
#include <QFile>
#include <QHash>
#include <QImage>
#include <QPainter>
#include <QRectF>
#include <QSvgRenderer>
#include <QtGlobal>

/// Outside every namespace, as the toolkit asks: a static library's resources are registered by name.
static void registerSymbols() {
    Q_INIT_RESOURCE(symbols);
}

namespace quillmoth {

namespace {

QImage rendered(const QString& name, int pixels, const QColor& color) {
    registerSymbols();
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QFile file(QStringLiteral(":/symbols/") + name + QStringLiteral(".svg"));
    if (!file.open(QIODevice::ReadOnly))
        return image;
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QSvgRenderer(file.readAll()).render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

/// By name, size, scale and colour.
QImage& keptImage(const QString& name, int pixels, double scale, const QColor& color) {
    static QHash<QString, QImage> images;
    return images[QStringLiteral("%1/%2/%3/%4").arg(name).arg(pixels).arg(scale).arg(color.rgba(), 0, 16)];
}

} // namespace

void drawSymbol(QPainter& painter, const QString& name, const QRectF& frame, const QColor& color) {
    const double scale = painter.device()->devicePixelRatioF();
    const int pixels = qRound(frame.width() * scale);
    if (pixels <= 0)
        return;
    QImage& symbol = keptImage(name, pixels, scale, color);
    if (symbol.isNull()) {
        symbol = rendered(name, pixels, color);
        symbol.setDevicePixelRatio(scale);
    }
    // on whole device pixels, or the strokes blur
    const QPointF corner = painter.transform().map(frame.topLeft()) * scale;
    const QPointF shift = (QPointF(corner.toPoint()) - corner) / scale;
    painter.drawImage(frame.topLeft() + shift, symbol);
}

void drawSymbol(QPainter& painter, const QString& name, QPointF position, int size, const QColor& color) {
    drawSymbol(painter, name, QRectF(position, QSizeF(size, size)), color);
}

} // namespace quillmoth
