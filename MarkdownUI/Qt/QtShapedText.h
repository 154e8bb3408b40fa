#pragma once

#include "MarkdownUI/Layout/TextEngine.h"
#include "MarkdownUI/Qt/UTF16Index.h"

#include <QColor>
#include <QTextLayout>

#include <functional>
#include <utility>
#include <vector>

class QPainter;
class QPointF;

namespace quillmoth::markdown {

/// A text shaped by QTextLayout. Made by QtTextEngine.
class QtShapedText : public ShapedText {
public:
    /// Gives ascent and descent of the line that holds the bytes [begin, end). Those of the fonts asked for,
    /// so that a fallback font (emoji, another script) does not move the lines apart.
    using LineHeight = std::function<std::pair<double, double>(std::size_t begin, std::size_t end)>;

    struct Input {
        UTF16Index text;
        QString layoutText; ///< as long as the text: line feeds and attachments replaced
        QFont font;
        QList<QTextLayout::FormatRange> formats;
        TextOptions options;
        double tabWidth = 0; ///< pixels from one tab stop to the next
    };

    QtShapedText(Input input, const LineHeight& heightOf);

    [[nodiscard]] const std::vector<TextLine>& lines() const override { return lines_; }

    [[nodiscard]] std::size_t offsetAt(std::size_t line, double x) const override;
    [[nodiscard]] double caretX(std::size_t line, std::size_t offset) const override;
    [[nodiscard]] std::vector<Rect> rectanglesOf(std::size_t begin, std::size_t end) const override;

    /// Paints one line; `origin` is where the text's own origin lies. Text without a colour takes the
    /// painter's pen.
    void drawLine(QPainter& painter, std::size_t line, const QPointF& origin) const;

    /// A stretch that is painted in one colour, whatever its own ones are. Bytes.
    struct TextSelection {
        std::size_t begin = 0;
        std::size_t end = 0;
        QColor color;
    };

    void drawLine(QPainter& painter, std::size_t line, const QPointF& origin,
                  const TextSelection& selection) const;

private:
    void layOut(const TextOptions& options, const LineHeight& heightOf);
    void place(QTextLine& line, const TextOptions& options, const LineHeight& heightOf, double top);
    [[nodiscard]] QTextLine lineAt(std::size_t line) const;
    void appendRectangles(std::size_t line, int begin, int end, std::vector<Rect>& rectangles) const;

    UTF16Index text_;
    QTextLayout layout_;
    std::vector<TextLine> lines_;
    bool isOneDirection_ = true; ///< no right-to-left character anywhere
};

} // namespace quillmoth::markdown
