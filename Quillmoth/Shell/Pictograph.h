#pragma once

#include <QRectF>
#include <Qt>

class QFont;
class QPainter;
class QString;

namespace quillmoth {

/// Draws an emoji, or what stands for one, in the painter's colour, and returns how wide it is. What has been
/// drawn is kept: to draw a glyph of a colour font takes a hundred times as long as to draw a letter. Main
/// thread.
double drawPictograph(QPainter& painter, const QRectF& place, Qt::Alignment alignment, const QFont& font,
                      const QString& text);

} // namespace quillmoth
