#pragma once

#include <QColor>
#include <QHash>
#include <QImage>
#include <QPointF>
#include <QString>

class QPainter;

namespace quillmoth {

/// The symbols of the program as pictures, drawn from the compiled-in SVG files and tinted. Kept by name,
/// size, scale and colour. Main thread.
class SymbolCache {
public:
    SymbolCache();

    /// `size` in device-independent pixels; the picture is `size` x `scale` pixels wide and knows its scale.
    /// A name without a file gives a transparent picture.
    const QImage& symbol(const QString& name, int size, double scale, const QColor& color);

    /// Draws at the scale of the painter's device.
    void draw(QPainter& painter, const QString& name, QPointF position, int size, const QColor& color);

private:
    QHash<QString, QImage> images_;
};

/// Those drawn in windows.
[[nodiscard]] SymbolCache& windowSymbols();

} // namespace quillmoth
