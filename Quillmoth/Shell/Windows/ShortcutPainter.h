#pragma once

#include <QRectF>
#include <QString>

class QPainter;

namespace quillmoth {

/// Draws the text of a shortcut in the middle of `place`, with the painter's font and pen. The sign of the
/// space bar, U+23B5, which hardly a font has, is drawn here, on the base line.
void drawShortcutText(QPainter& painter, const QRectF& place, const QString& text);

} // namespace quillmoth
