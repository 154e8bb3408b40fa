#pragma once

#include <QColor>
#include <QHash>
#include <QImage>
#include <QString>

class QPainter;
class QRectF;

namespace quillmoth::markdown {

/// The system symbols ("doc.on.doc"), tinted, kept by name, size, scale and colour. Main thread.
class SymbolImages {
public:
    SymbolImages();

    /// Fills `frame`, which is square. A name that there is no symbol for paints nothing.
    void draw(QPainter& painter, const QString& name, const QRectF& frame, const QColor& color);

    /// `size` in logical pixels.
    [[nodiscard]] QImage image(const QString& name, double size, double scale, const QColor& color);

private:
    QHash<QString, QImage> images_;
};

} // namespace quillmoth::markdown
