#pragma once

#include <QFont>
#include <QRectF>
#include <QString>

class QPainter;

namespace quillmoth {

/// Draws one line of text whose emoji come from the colour font, also where the font of the text has them in
/// black. Colour and font are the painter's.
void drawEmojiText(QPainter& painter, const QRectF& rect, Qt::Alignment horizontal, const QString& text);

/// The width of that line.
[[nodiscard]] double emojiTextWidth(const QFont& font, const QString& text);

} // namespace quillmoth
