#include "Quillmoth/Shell/Looks/EmojiText.h"

#include "Quillmoth/Shell/Looks/Fonts.h"

#include <QPainter>
#include <QTextLayout>

namespace quillmoth {

namespace {

constexpr char32_t kFirstPictograph = 0x1F000;
constexpr char16_t kEmojiPresentation = 0xFE0F;

/// UTF-16 units of the emoji at `position`, 0 where there is none.
int emojiLength(const QString& text, int position) {
    const QChar unit = text[position];
    if (unit.isHighSurrogate() && position + 1 < text.size())
        return QChar::surrogateToUcs4(unit, text[position + 1]) >= kFirstPictograph ? 2 : 0;
    if (position + 1 < text.size() && text[position + 1] == QChar(kEmojiPresentation))
        return 2;
    return 0;
}

QList<QTextLayout::FormatRange> emojiRanges(const QFont& font, const QString& text) {
    QFont emoji = font;
    const QFont pictures = emojiFont(font.pixelSize());
    emoji.setFamilies(pictures.families());
    emoji.setPixelSize(pictures.pixelSize());
    emoji.setLetterSpacing(QFont::PercentageSpacing, 100);
    emoji.setWeight(QFont::Normal);
    QTextCharFormat format;
    format.setFont(emoji);
    QList<QTextLayout::FormatRange> ranges;
    for (int position = 0; position < text.size(); ++position) {
        const int length = emojiLength(text, position);
        if (length == 0)
            continue;
        // Neighbours are shaped together: some are one picture.
        if (!ranges.isEmpty() && ranges.back().start + ranges.back().length == position)
            ranges.back().length += length;
        else
            ranges.append({position, length, format});
        position += length - 1;
    }
    return ranges;
}

QTextLine layOut(QTextLayout& layout, const QFont& font) {
    layout.setFont(font);
    layout.setFormats(emojiRanges(font, layout.text()));
    layout.beginLayout();
    QTextLine line = layout.createLine();
    layout.endLayout();
    return line;
}

} // namespace

void drawEmojiText(QPainter& painter, const QRectF& rect, Qt::Alignment horizontal, const QString& text) {
    QTextLayout layout(text);
    const QTextLine line = layOut(layout, painter.font());
    const double surplus = rect.width() - line.naturalTextWidth();
    const double left = rect.left() + (horizontal & Qt::AlignHCenter ? surplus / 2 : 0);
    // By the text's own metrics, whatever the emoji's are.
    const QFontMetricsF metrics(painter.font());
    const double baseline = rect.top() + (rect.height() - metrics.height()) / 2 + metrics.ascent();
    line.draw(&painter, QPointF(left, baseline - line.ascent() - line.y()));
}

double emojiTextWidth(const QFont& font, const QString& text) {
    QTextLayout layout(text);
    return layOut(layout, font).naturalTextWidth();
}

} // namespace quillmoth
