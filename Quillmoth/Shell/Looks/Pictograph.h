#pragma once

#include <QRectF>
#include <Qt>

class QFont;
class QPainter;
class QString;

namespace quillmoth {

/// Draws an emoji, or what stands for one, in the painter's colour, and returns how wide it is. Of a longer
/// text the first 16 UTF-16 units are drawn. What has been drawn is kept: a glyph of a colour font is a
/// compressed picture, which would be unpacked each time. Main thread.
double drawPictograph(QPainter& painter, const QRectF& place, Qt::Alignment alignment, const QFont& font,
                      const QString& text);

} // namespace quillmoth
