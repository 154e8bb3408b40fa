#include "Platform/Linux/Tray/TintedSymbol.h"

#include <QFile>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

/// Outside every namespace, as Qt asks: a static library's resources are registered by name.
static void registerSymbols() {
    Q_INIT_RESOURCE(tray);
}

namespace quillmoth::platform {

QIcon tintedSymbol(const std::string& name, const QColor& colour) {
    registerSymbols();
    QFile file(QStringLiteral(":/tray/") + QString::fromStdString(name) + QStringLiteral(".svg"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QByteArray drawing = file.readAll();
    drawing.replace("currentColor", colour.name(QColor::HexRgb).toLatin1());
    QSvgRenderer renderer(drawing);
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 44, 48, 64}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setOpacity(colour.alphaF());
        renderer.render(&painter);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace quillmoth::platform
