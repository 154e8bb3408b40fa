#pragma once

#include <QPointF>
#include <QString>

class QColor;
class QPainter;
class QRectF;

namespace quillmoth {

/// Draws a symbol of the program ("doc.on.doc") in one colour, at the scale of the painter's device. `frame`
/// is square. A name without a file draws nothing. The pictures made of the compiled-in SVG files are kept.
/// Main thread.
void drawSymbol(QPainter& painter, const QString& name, const QRectF& frame, const QColor& color);

/// The same at `position`, `size` pixels wide and high.
void drawSymbol(QPainter& painter, const QString& name, QPointF position, int size, const QColor& color);

} // namespace quillmoth
