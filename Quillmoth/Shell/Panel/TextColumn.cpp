#include "Quillmoth/Shell/Panel/TextColumn.h"

#include "Quillmoth/Shell/Looks/Palette.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace quillmoth {

namespace {

// A paragraph that grows is cut behind so many lines, so that an append lays out no more than these.
constexpr int kLinesAPiece = 6;
// Text of one layout call, far more than the lines of a piece take.
constexpr int kLongestPiece = 2000;
constexpr int kKeptLayouts = 64;

} // namespace

void TextColumn::setStyle(const Style& style) {
    if (style == style_)
        return;
    style_ = style;
    layOutFrom(0);
}

void TextColumn::setWidth(double width) {
    if (width == width_)
        return;
    width_ = width;
    layOutFrom(0);
}

void TextColumn::setText(const QString& text) {
    text_ = text;
    layOutFrom(0);
}

void TextColumn::append(const QString& text) {
    text_ += text;
    if (isComplete())
        layOutFrom(pieces_.empty() ? 0 : pieces_.back().start);
}

double TextColumn::height() const {
    const double set = pieces_.empty() ? style_.lineHeight : pieces_.back().top + pieces_.back().height;
    if (isComplete())
        return set;
    const double rest = static_cast<double>(text_.size() - next_->start);
    return set + std::ceil(set * rest / std::max(next_->start, 1) / style_.lineHeight) * style_.lineHeight;
}

void TextColumn::ensureLaidOut(double bottom) {
    while (!isComplete() && pieces_.back().top + pieces_.back().height < bottom)
        layOutMore();
}

double TextColumn::usedWidth() const {
    double width = 0;
    for (const Piece& piece : pieces_)
        width = std::max(width, piece.usedWidth);
    return width;
}

Qt::LayoutDirection TextColumn::directionOfParagraph(int start) const {
    const qsizetype end = text_.indexOf(QLatin1Char('\n'), start);
    const QString paragraph =
        text_.mid(start, std::min<qsizetype>(end < 0 ? kLongestPiece : end - start, kLongestPiece));
    return paragraph.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight;
}

/// Lays out anew from `position`, which is the start of a piece.
void TextColumn::layOutFrom(int position) {
    if (width_ <= 0)
        return;
    const auto first = std::find_if(pieces_.begin(), pieces_.end(),
                                    [&](const Piece& piece) { return piece.start >= position; });
    const bool continues = position > 0 && text_.at(position - 1) != QLatin1Char('\n');
    const auto direction =
        continues && first != pieces_.end() ? first->direction : directionOfParagraph(position);
    pieces_.erase(first, pieces_.end());
    next_ = Next{.start = position, .end = endOfParagraph(position), .direction = direction};
    layOutMore();
}

void TextColumn::layOutMore() {
    if (isComplete())
        return;
    const int from = next_->start;
    while (next_ && next_->start - from < kSlice)
        layOutPiece(*next_);
}

int TextColumn::endOfParagraph(int start) const {
    const qsizetype found = text_.indexOf(QLatin1Char('\n'), start);
    return static_cast<int>(found < 0 ? text_.size() : found);
}

/// Adds a piece of what is left of a paragraph, and moves `next` behind it.
void TextColumn::layOutPiece(Next next) {
    const int length = std::min(next.end - next.start, kLongestPiece);
    auto layout = makeLayout(next.start, length, next.direction);
    Piece piece;
    piece.start = next.start;
    piece.length = length;
    piece.direction = next.direction;
    const bool isRest = next.start + length == next.end;
    const int lines = layout->lineCount();
    // The last line of a text that goes on may still take more words.
    const int kept = isRest && lines <= kLinesAPiece ? lines : std::min(kLinesAPiece, std::max(1, lines - 1));
    if (kept < lines)
        piece.length = layout->lineAt(kept).textStart();
    for (int line = 0; line < kept; ++line)
        piece.usedWidth = std::max(piece.usedWidth, layout->lineAt(line).naturalTextWidth());
    piece.top = pieces_.empty() ? 0 : pieces_.back().top + pieces_.back().height;
    const QTextLine last = layout->lineAt(kept - 1);
    piece.height = last.y() - layout->lineAt(0).y() + style_.lineHeight;
    if (kept == lines)
        piece.layout = std::move(layout);
    const int after = next.start + piece.length;
    pieces_.push_back(std::move(piece));
    if (after < next.end || kept < lines)
        next_->start = after;
    else if (next.end == text_.size())
        next_.reset();
    else
        next_ = Next{.start = next.end + 1,
                     .end = endOfParagraph(next.end + 1),
                     .direction = directionOfParagraph(next.end + 1)};
}

std::unique_ptr<QTextLayout> TextColumn::makeLayout(int start, int length,
                                                    Qt::LayoutDirection direction) const {
    auto layout = std::make_unique<QTextLayout>(text_.mid(start, length), style_.font);
    QTextOption option(style_.alignment);
    option.setTextDirection(direction);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout->setTextOption(option);
    layout->setCacheEnabled(true);
    setLines(*layout);
    return layout;
}

void TextColumn::setLines(QTextLayout& layout) const {
    const QFontMetricsF metrics(style_.font);
    const double baseline =
        qRound((style_.lineHeight - metrics.ascent() - metrics.descent()) / 2 + metrics.ascent());
    double top = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width_);
        // Lines stand at one distance, whatever fallback fonts they hold.
        line.setPosition({0, top + baseline - line.ascent()});
        top += style_.lineHeight;
        ++laidOutLines_;
    }
    layout.endLayout();
}

const QTextLayout& TextColumn::layoutOf(const Piece& piece) const {
    if (!piece.layout)
        piece.layout = makeLayout(piece.start, piece.length, piece.direction);
    return *piece.layout;
}

std::size_t TextColumn::pieceAtHeight(double y) const {
    const auto after = std::upper_bound(pieces_.begin(), pieces_.end(), y,
                                        [](double value, const Piece& piece) { return value < piece.top; });
    return after == pieces_.begin() ? 0 : static_cast<std::size_t>(after - pieces_.begin() - 1);
}

void TextColumn::paint(QPainter& painter, const QRectF& clip, const QColor& color, int selectionStart,
                       int selectionEnd) const {
    if (pieces_.empty())
        return;
    painter.setPen(color);
    for (std::size_t index = pieceAtHeight(clip.top()); index < pieces_.size(); ++index) {
        const Piece& piece = pieces_[index];
        if (piece.top > clip.bottom())
            break;
        QList<QTextLayout::FormatRange> marked;
        const int from = std::max(selectionStart - piece.start, 0);
        const int to = std::min(selectionEnd - piece.start, piece.length);
        if (from < to) {
            QTextLayout::FormatRange range{from, to - from, {}};
            range.format.setBackground(kPanelTheme.selection);
            range.format.setForeground(kPanelTheme.text);
            marked.append(range);
        }
        layoutOf(piece).draw(&painter, {0, piece.top}, marked);
    }
    letGoOutside(clip);
}

void TextColumn::letGoOutside(const QRectF& clip) const {
    if (pieces_.size() <= kKeptLayouts)
        return;
    const double margin = 2 * clip.height() + style_.lineHeight;
    for (const Piece& piece : pieces_) {
        const bool far = piece.top + piece.height < clip.top() - margin || piece.top > clip.bottom() + margin;
        if (far && piece.layout)
            piece.layout.reset();
    }
}

int TextColumn::positionAt(QPointF point) const {
    if (pieces_.empty())
        return 0;
    const Piece& piece = pieces_[pieceAtHeight(point.y())];
    const QTextLayout& layout = layoutOf(piece);
    const int line =
        std::clamp(static_cast<int>((point.y() - piece.top) / style_.lineHeight), 0, layout.lineCount() - 1);
    return piece.start + layout.lineAt(line).xToCursor(point.x());
}

QRectF TextColumn::lineRectAt(int position) const {
    const auto after = std::upper_bound(pieces_.begin(), pieces_.end(), position,
                                        [](int value, const Piece& piece) { return value < piece.start; });
    if (after == pieces_.begin())
        return {0, 0, width_, static_cast<double>(style_.lineHeight)};
    const Piece& piece = *(after - 1);
    const int line =
        layoutOf(piece).lineForTextPosition(std::min(position - piece.start, piece.length)).lineNumber();
    return {0, piece.top + line * style_.lineHeight, width_, static_cast<double>(style_.lineHeight)};
}

int TextColumn::heldLayouts() const {
    return static_cast<int>(std::count_if(pieces_.begin(), pieces_.end(),
                                          [](const Piece& piece) { return piece.layout != nullptr; }));
}

} // namespace quillmoth
