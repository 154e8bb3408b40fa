#include "MarkdownUI/Qt/ItemSelection.h"

#include "MarkdownUI/Qt/TextBoundaries.h"

#include <algorithm>

namespace quillmoth::markdown {

namespace {

constexpr double kFarAway = 1e6;
constexpr int kMostLineSteps = 64; // over gaps and images; each is half a line

using Boundary = std::size_t (*)(std::string_view, std::size_t);

TextRange unitAround(const ItemContent& content, TextPosition position, SelectionUnit unit) {
    if (unit == SelectionUnit::character)
        return {position, position};
    const std::string text = content.textOfBlock(position.block);
    if (unit == SelectionUnit::block && content.hasBlocks())
        return {{position.block, 0}, {position.block, text.size()}};
    const auto [begin, end] =
        unit == SelectionUnit::word ? wordAround(text, position.offset) : lineAround(text, position.offset);
    return {{position.block, begin}, {position.block, end}};
}

TextPosition movedForward(const ItemContent& content, TextPosition from, Boundary boundary) {
    const std::string text = content.textOfBlock(from.block);
    if (from.offset < text.size())
        return {from.block, boundary(text, from.offset)};
    return from.block < content.wholeRange().end.block ? TextPosition{from.block + 1, 0} : from;
}

TextPosition movedBack(const ItemContent& content, TextPosition from, Boundary boundary) {
    if (from.offset > 0)
        return {from.block, boundary(content.textOfBlock(from.block), from.offset)};
    return from.block > 0 ? TextPosition{from.block - 1, content.textOfBlock(from.block - 1).size()} : from;
}

/// An end of the line that holds `from`; at a border of its block where other text stands beside it.
TextPosition lineEdge(ItemContent& content, TextPosition from, bool isEnd) {
    const Rect caret = content.caretRectangle(from);
    const TextPosition edge = content.positionAt({isEnd ? kFarAway : -kFarAway, caret.y + caret.height / 2});
    if (edge.block == from.block)
        return edge;
    return {from.block, isEnd ? content.textOfBlock(from.block).size() : 0};
}

} // namespace

void ItemSelection::clear() {
    range_ = anchor_ = {caret_, caret_};
    unit_ = SelectionUnit::character;
}

void ItemSelection::selectAll(const ItemContent& content) {
    range_ = content.wholeRange();
    anchor_ = {range_.begin, range_.begin};
    caret_ = range_.end;
    unit_ = SelectionUnit::character;
    column_.reset();
}

void ItemSelection::begin(const ItemContent& content, TextPosition position, SelectionUnit unit) {
    unit_ = unit;
    anchor_ = range_ = unitAround(content, position, unit);
    caret_ = range_.end;
    column_.reset();
}

void ItemSelection::extendTo(const ItemContent& content, TextPosition position) {
    const TextRange target = unitAround(content, position, unit_);
    range_ = {std::min(anchor_.begin, target.begin), std::max(anchor_.end, target.end)};
    caret_ = target.begin < anchor_.begin ? target.begin : target.end;
}

void ItemSelection::extend(ItemContent& content, CaretMove move) {
    const bool keepsColumn = move == CaretMove::lineAbove || move == CaretMove::lineBelow;
    if (!keepsColumn)
        column_.reset();
    unit_ = SelectionUnit::character;
    const TextPosition anchor = caret_ == range_.begin ? range_.end : range_.begin;
    anchor_ = {anchor, anchor};
    caret_ = moved(content, move);
    range_ = {std::min(anchor, caret_), std::max(anchor, caret_)};
}

void ItemSelection::setRanges(const std::array<TextRange, 2>& ranges) {
    const bool isAtBegin = caret_ == range_.begin;
    range_ = ranges[0];
    anchor_ = ranges[1];
    caret_ = isAtBegin ? range_.begin : range_.end;
}

TextPosition ItemSelection::moved(ItemContent& content, CaretMove move) {
    switch (move) {
    case CaretMove::previousCharacter:
        return movedBack(content, caret_, previousCharacter);
    case CaretMove::nextCharacter:
        return movedForward(content, caret_, nextCharacter);
    case CaretMove::previousWord:
        return movedBack(content, caret_, previousWord);
    case CaretMove::nextWord:
        return movedForward(content, caret_, nextWord);
    case CaretMove::lineAbove:
        return movedByLine(content, false);
    case CaretMove::lineBelow:
        return movedByLine(content, true);
    case CaretMove::lineStart:
        return lineEdge(content, caret_, false);
    case CaretMove::lineEnd:
        return lineEdge(content, caret_, true);
    case CaretMove::documentStart:
        return content.wholeRange().begin;
    case CaretMove::documentEnd:
        break;
    }
    return content.wholeRange().end;
}

TextPosition ItemSelection::movedByLine(ItemContent& content, bool isDown) {
    const Rect from = content.caretRectangle(caret_);
    column_ = column_.value_or(from.x);
    const double step = (isDown ? 1 : -1) * std::max(from.height / 2, 1.0);
    double y = from.y + from.height / 2;
    for (int count = 0; count < kMostLineSteps; ++count) {
        y += step;
        const TextPosition there = content.positionAt({*column_, y});
        const Rect rect = content.caretRectangle(there);
        const bool isOtherLine = isDown ? rect.y >= from.y + step : rect.y <= from.y + step;
        if (there != caret_ && isOtherLine)
            return there;
    }
    return isDown ? content.wholeRange().end : content.wholeRange().begin;
}

} // namespace quillmoth::markdown
