#include "Quillmoth/Shell/Looks/SymbolCache.h"

#include <QPainter>
#include <QSvgRenderer>

// Q_INIT_RESOURCE has to stand outside of every namespace.
static void initialiseSymbolResources() {
    Q_INIT_RESOURCE(shell_symbols);
}

namespace quillmoth {

namespace {

QImage renderSymbol(const QString& name, int size, double scale, const QColor& color) {
    const int pixels = qRound(size * scale);
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer renderer(QStringLiteral(":/symbols/%1.svg").arg(name));
    QPainter painter(&image);
    renderer.render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    painter.end();
    image.setDevicePixelRatio(scale);
    return image;
}

} // namespace

SymbolCache::SymbolCache() {
    initialiseSymbolResources();
}

const QImage& SymbolCache::symbol(const QString& name, int size, double scale, const QColor& color) {
    const QString key = QStringLiteral("%1/%2/%3/%4").arg(name).arg(size).arg(scale).arg(color.rgba());
    auto found = images_.find(key);
    if (found == images_.end())
        found = images_.insert(key, renderSymbol(name, size, scale, color));
    return *found;
}

void SymbolCache::draw(QPainter& painter, const QString& name, QPointF position, int size,
                       const QColor& color) {
    painter.drawImage(position, symbol(name, size, painter.device()->devicePixelRatioF(), color));
}

SymbolCache& windowSymbols() {
    static SymbolCache cache;
    return cache;
}

} // namespace quillmoth
