#include "MarkdownUI/Qt/QtShapedText.h"

#include <QColor>
#include <QGlyphRun>
#include <QPainter>
#include <QPointF>
#include <QRawFont>

#include <algorithm>
#include <cmath>
#include <utility>

namespace quillmoth::markdown {

namespace {

constexpr double kNoWrapWidth = 1e7; // QTextLine keeps widths in 26.6 fixed point

QTextOption optionOf(const TextOptions& options, double tabWidth) {
    QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
    option.setTextDirection(options.direction == TextDirection::rightToLeft ? Qt::RightToLeft
                                                                            : Qt::LeftToRight);
    option.setWrapMode(std::isinf(options.width) ? QTextOption::NoWrap
                                                 : QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTabStopDistance(tabWidth);
    return option;
}

double leftOf(const TextOptions& options, double advance) {
    if (std::isinf(options.width))
        return 0;
    const double free = std::max(options.width - advance, 0.0);
    const bool isRightToLeft = options.direction == TextDirection::rightToLeft;
    switch (options.alignment) {
    case TextAlignment::leading:
        return isRightToLeft ? free : 0;
    case TextAlignment::center:
        return free / 2;
    case TextAlignment::trailing:
        break;
    }
    return isRightToLeft ? 0 : free;
}

bool hasRightToLeft(const QString& text) {
    return std::any_of(text.begin(), text.end(), [](QChar unit) {
        return unit.unicode() >= 0x590 &&
               (unit.isSurrogate() || unit.direction() == QChar::DirR || unit.direction() == QChar::DirAL);
    });
}

/// Where the glyphs of [begin, end) stand, from left to right; those that touch are one stretch.
std::vector<std::pair<double, double>> stretchesOf(const QTextLine& line, int begin, int end) {
    constexpr double kTouching = 0.5;
    std::vector<std::pair<double, double>> stretches;
    for (const QGlyphRun& run : line.glyphRuns(begin, end - begin)) {
        const QList<QPointF> positions = run.positions();
        const QList<QPointF> advances = run.rawFont().advancesForGlyphIndexes(run.glyphIndexes());
        for (qsizetype glyph = 0; glyph < positions.size(); ++glyph)
            stretches.emplace_back(positions[glyph].x(), positions[glyph].x() + advances[glyph].x());
    }
    std::sort(stretches.begin(), stretches.end());
    std::vector<std::pair<double, double>> joined;
    for (const auto& stretch : stretches) {
        if (!joined.empty() && stretch.first <= joined.back().second + kTouching)
            joined.back().second = std::max(joined.back().second, stretch.second);
        else
            joined.push_back(stretch);
    }
    return joined;
}

} // namespace

QtShapedText::QtShapedText(Input input, const LineHeight& heightOf)
    : text_(std::move(input.text)), layout_(input.layoutText, input.font) {
    isOneDirection_ =
        input.options.direction == TextDirection::leftToRight && !hasRightToLeft(input.layoutText);
    layout_.setFormats(input.formats);
    layout_.setTextOption(optionOf(input.options, input.tabWidth));
    layout_.setCacheEnabled(true); // or each paint shapes again
    layOut(input.options, heightOf);
}

void QtShapedText::layOut(const TextOptions& options, const LineHeight& heightOf) {
    const double width = std::isinf(options.width) ? kNoWrapWidth : options.width;
    double top = 0;
    layout_.beginLayout();
    for (QTextLine line = layout_.createLine(); line.isValid(); line = layout_.createLine()) {
        line.setLineWidth(width);
        place(line, options, heightOf, top);
        top += lines_.back().height() + options.lineSpacing;
    }
    layout_.endLayout();
}

void QtShapedText::place(QTextLine& line, const TextOptions& options, const LineHeight& heightOf,
                         double top) {
    const int first = line.textStart();
    int last = first + line.textLength();
    if (last > first && layout_.text().at(last - 1) == QChar::LineSeparator)
        --last;
    const std::size_t begin = text_.byteOf(first);
    const std::size_t end = text_.byteOf(last);
    const auto [ascent, descent] = heightOf(begin, end);
    const double advance = line.naturalTextWidth();
    const double left = leftOf(options, advance);
    line.setPosition(QPointF(left, top + ascent - line.ascent()));
    lines_.push_back({.begin = begin,
                      .end = end,
                      .x = left,
                      .top = top,
                      .ascent = ascent,
                      .descent = descent,
                      .advance = advance});
}

QTextLine QtShapedText::lineAt(std::size_t line) const {
    return layout_.lineAt(static_cast<int>(line));
}

std::size_t QtShapedText::offsetAt(std::size_t line, double x) const {
    const std::size_t offset = text_.byteOf(lineAt(line).xToCursor(x));
    return std::clamp(offset, lines_[line].begin, lines_[line].end);
}

double QtShapedText::caretX(std::size_t line, std::size_t offset) const {
    const std::size_t inside = std::clamp(offset, lines_[line].begin, lines_[line].end);
    return lineAt(line).cursorToX(text_.utf16Of(inside));
}

std::vector<Rect> QtShapedText::rectanglesOf(std::size_t begin, std::size_t end) const {
    std::vector<Rect> rectangles;
    const auto endsBefore = [](const TextLine& line, std::size_t offset) { return line.end < offset; };
    auto line = std::lower_bound(lines_.begin(), lines_.end(), begin, endsBefore);
    for (; line != lines_.end() && line->begin < end; ++line) {
        const std::size_t from = std::max(begin, line->begin);
        const std::size_t to = std::min(end, line->end);
        if (from < to) {
            appendRectangles(static_cast<std::size_t>(line - lines_.begin()), text_.utf16Of(from),
                             text_.utf16Of(to), rectangles);
        }
    }
    return rectangles;
}

void QtShapedText::appendRectangles(std::size_t line, int begin, int end,
                                    std::vector<Rect>& rectangles) const {
    const QTextLine shaped = lineAt(line);
    const TextLine& box = lines_[line];
    if (isOneDirection_) {
        const double left = shaped.cursorToX(begin);
        rectangles.push_back({left, box.top, shaped.cursorToX(end) - left, box.height()});
        return;
    }
    for (const auto& [left, right] : stretchesOf(shaped, begin, end))
        rectangles.push_back({left, box.top, right - left, box.height()});
}

void QtShapedText::drawLine(QPainter& painter, std::size_t line, const QPointF& origin) const {
    lineAt(line).draw(&painter, origin);
}

void QtShapedText::drawLine(QPainter& painter, std::size_t line, const QPointF& origin,
                            const TextSelection& selection) const {
    const TextLine& box = lines_[line];
    QTextLayout::FormatRange range;
    range.start = text_.utf16Of(std::max(selection.begin, box.begin));
    range.length = text_.utf16Of(std::min(selection.end, box.end)) - range.start;
    if (range.length <= 0)
        return drawLine(painter, line, origin);
    range.format.setForeground(selection.color);
    // the layout draws all lines that meet the clip: keep clear of the neighbours
    const QRectF area(origin.x() + box.x - box.height(), origin.y() + box.top + 1,
                      box.advance + 2 * box.height(), box.height() - 2);
    painter.save();
    painter.setClipRect(area.adjusted(0, -1, 0, 1), Qt::IntersectClip);
    layout_.draw(&painter, origin, {range}, area);
    painter.restore();
}

} // namespace quillmoth::markdown
