#pragma once

#include <QColor>
#include <QFont>
#include <QRectF>
#include <QString>
#include <QTextLayout>

#include <memory>
#include <optional>
#include <vector>

namespace quillmoth {

/// Plain text set in lines of one width. Text can be put behind it for the price of the last lines alone, and
/// the layouts of lines that are not painted are let go. A long text is set in slices: what has not been set
/// yet counts with an estimated height. Positions are UTF-16 offsets in the whole text.
class TextColumn {
public:
    /// So much is set at once.
    static constexpr int kSlice = 20'000;

    struct Style {
        QFont font;
        int lineHeight = 22;
        Qt::Alignment alignment = Qt::AlignLeft;

        friend bool operator==(const Style&, const Style&) = default;
    };

    void setStyle(const Style& style);
    void setWidth(double width);
    void setText(const QString& text);
    void append(const QString& text);

    [[nodiscard]] const QString& text() const { return text_; }

    /// Estimated in part until `isComplete`.
    [[nodiscard]] double height() const;

    [[nodiscard]] bool isComplete() const { return !next_; }

    /// Sets the next slice of what is not set yet.
    void layOutMore();

    /// Sets all down to a height.
    void ensureLaidOut(double bottom);

    /// The width of the longest line.
    [[nodiscard]] double usedWidth() const;

    /// Draws what lies within `clip`; the text from `selectionStart` to `selectionEnd` is marked.
    void paint(QPainter& painter, const QRectF& clip, const QColor& color, int selectionStart,
               int selectionEnd) const;

    [[nodiscard]] int positionAt(QPointF point) const;
    /// The place of the line that holds the position.
    [[nodiscard]] QRectF lineRectAt(int position) const;

    /// Lines laid out since the column was made; tests watch what an append costs.
    [[nodiscard]] int laidOutLines() const { return laidOutLines_; }

    /// Layouts held in memory now.
    [[nodiscard]] int heldLayouts() const;

private:
    /// Some lines of one paragraph.
    struct Piece {
        int start = 0;
        int length = 0;
        Qt::LayoutDirection direction = Qt::LeftToRight;
        double top = 0;
        double height = 0;
        double usedWidth = 0;
        mutable std::unique_ptr<QTextLayout> layout;
    };

    /// What is to be set next: the rest of a paragraph.
    struct Next {
        int start = 0;
        int end = 0;
        Qt::LayoutDirection direction = Qt::LeftToRight;
    };

    void layOutFrom(int position);
    void layOutPiece(Next next);
    [[nodiscard]] int endOfParagraph(int start) const;
    [[nodiscard]] std::unique_ptr<QTextLayout> makeLayout(int start, int length,
                                                          Qt::LayoutDirection direction) const;
    void setLines(QTextLayout& layout) const;
    [[nodiscard]] const QTextLayout& layoutOf(const Piece& piece) const;
    [[nodiscard]] Qt::LayoutDirection directionOfParagraph(int start) const;
    [[nodiscard]] std::size_t pieceAtHeight(double y) const;
    void letGoOutside(const QRectF& clip) const;

    Style style_;
    double width_ = 0;
    QString text_;
    std::vector<Piece> pieces_;
    /// None where all is set.
    std::optional<Next> next_;
    mutable int laidOutLines_ = 0;
};

} // namespace quillmoth
