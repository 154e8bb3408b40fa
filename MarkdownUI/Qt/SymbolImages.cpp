#include "MarkdownUI/Qt/SymbolImages.h"

#include <QFile>
#include <QPainter>
#include <QRectF>
#include <QSvgRenderer>
#include <QtGlobal>

#include <cmath>

static void initializeSymbols() {
    Q_INIT_RESOURCE(symbols); // a static library's resources are not found otherwise
}

namespace quillmoth::markdown {

namespace {

QImage rendered(const QString& name, int pixels) {
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QFile file(QStringLiteral(":/quillmoth/symbols/") + name + QStringLiteral(".svg"));
    if (file.open(QIODevice::ReadOnly)) {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        QSvgRenderer(file.readAll()).render(&painter);
    }
    return image;
}

void tint(QImage& image, const QColor& color) {
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
}

} // namespace

SymbolImages::SymbolImages() {
    initializeSymbols();
}

QImage SymbolImages::image(const QString& name, double size, double scale, const QColor& color) {
    const int pixels = static_cast<int>(std::lround(size * scale));
    const QString key = name + QLatin1Char('/') + QString::number(pixels) + QLatin1Char('/') +
                        QString::number(color.rgba(), 16) + QLatin1Char('/') + QString::number(scale);
    QImage& image = images_[key];
    if (image.isNull() && pixels > 0) {
        image = rendered(name, pixels);
        tint(image, color);
        image.setDevicePixelRatio(scale);
    }
    return image;
}

void SymbolImages::draw(QPainter& painter, const QString& name, const QRectF& frame, const QColor& color) {
    const double scale = painter.device()->devicePixelRatioF();
    const QImage symbol = image(name, frame.width(), scale, color);
    if (!symbol.isNull()) {
        // on whole device pixels, or the strokes blur
        const QPointF corner = painter.transform().map(frame.topLeft()) * scale;
        const QPointF shift = (QPointF(corner.toPoint()) - corner) / scale;
        painter.drawImage(frame.topLeft() + shift, symbol);
    }
}

} // namespace quillmoth::markdown
