#include "MarkdownUI/Layout/TableCell.h"

#include "MarkdownUI/Layout/ImageFlow.h"
#include "MarkdownUI/Layout/InlineText.h"
#include "MarkdownUI/Layout/TextDirection.h"

#include <algorithm>
#include <cmath>

namespace quillmoth::markdown {

namespace {

/// A stretch between blanks, in bytes.
struct Word {
    std::size_t begin = 0;
    std::size_t end = 0;

    [[nodiscard]] std::size_t length() const { return end - begin; }
};

/// The longest words of a line; one of them is the widest, in all likelihood.
std::vector<Word> longestWords(std::string_view text, const TextLine& line) {
    constexpr std::size_t kMost = 6;
    std::vector<Word> words;
    for (std::size_t begin = line.begin; begin < line.end;) {
        const std::size_t end = std::min(text.find_first_of(" \n", begin), line.end);
        if (end > begin)
            words.push_back({begin, end});
        begin = end + 1;
    }
    const auto kept = words.begin() + static_cast<std::ptrdiff_t>(std::min(kMost, words.size()));
    std::ranges::partial_sort(words, kept, std::ranges::greater{}, &Word::length);
    words.erase(kept, words.end());
    return words;
}

/// What a text takes without padding: in one line, and broken at every blank.
ColumnNeeds needsOfText(const LayoutContext& context, const AttributedText& text) {
    ColumnNeeds needs;
    const auto shaped = context.engine.shape(text, {});
    const std::vector<TextLine>& lines = shaped->lines();
    for (std::size_t line = 0; line < lines.size(); ++line) {
        needs.ideal = std::max(needs.ideal, std::ceil(lines[line].advance));
        for (const Word& word : longestWords(text.text(), lines[line])) {
            double width = 0; // a word of both directions has several rectangles
            for (const Rect& part : shaped->rectanglesOf(word.begin, word.end))
                width += part.width;
            needs.least = std::max(needs.least, std::ceil(width));
        }
    }
    return needs;
}

/// The alignment of a cell's lines, as the text engine takes it: relative to the text's own direction. Where
/// the source says nothing the text starts where its direction does.
TextAlignment lineAlignment(std::optional<TextTableColumnAlignment> column, TextDirection table,
                            TextDirection text) {
    if (!column)
        return TextAlignment::leading;
    if (*column == TextTableColumnAlignment::center)
        return TextAlignment::center;
    const bool isTrailing = *column == TextTableColumnAlignment::trailing;
    return isTrailing == (table == text) ? TextAlignment::trailing : TextAlignment::leading;
}

} // namespace

TableCell::TableCell(const LayoutContext& context, const FlowUnit& unit, std::size_t row, std::size_t column)
    : context_(context), unit_(unit), row_(row), column_(column),
      view_(context.theme.tableCell({row, column, BlockView(context.bagOf(unit))})) {}

bool TableCell::isOfImages() const {
    return !inlines().empty() && isImageFlow(inlines());
}

ColumnNeeds TableCell::needs(double width) const {
    if (isOfImages()) {
        Box box;
        const double images =
            ImageFlow(context_, inlines(), font()).addTo(box, {0, width}, 0, unit_.direction).width;
        return {std::min(images, font().size * 2) + padding(), images + padding()};
    }
    const AttributedText text = textOfInlines(context_, inlines(), view_.attributes, width);
    const ColumnNeeds needs = needsOfText(context_, text);
    return {needs.least + padding(), needs.ideal + padding()};
}

TableCell::Content TableCell::addTo(Box& box, const ColumnFrame& column, double top) const {
    const bool isRightToLeft = unit_.direction == TextDirection::rightToLeft;
    const ColumnFrame inner{column.x + (isRightToLeft ? view_.trailing : view_.leading),
                            std::max(1.0, column.width - padding())};
    Content content{.firstFragment = box.fragments.size(), .firstDecoration = box.decorations.size()};
    Size size;
    if (isOfImages()) {
        size = ImageFlow(context_, inlines(), font()).addTo(box, inner, top + view_.top, unit_.direction);
    } else {
        AttributedText text = textOfInlines(context_, inlines(), view_.attributes, inner.width);
        const TextDirection direction = firstStrongDirection(text.text()).value_or(unit_.direction);
        const TextOptions options{
            inner.width, view_.lineSpacing, direction,
            lineAlignment(table().columnAlignments[column_], unit_.direction, direction), makeFont(font())};
        size = addFragment(context_, std::move(text), options, {inner.x, top + view_.top},
                           unit_.firstTextBlock + column_, box);
    }
    content.endFragment = box.fragments.size();
    content.endDecoration = box.decorations.size();
    content.height = size.height + view_.top + view_.bottom;
    return content;
}

} // namespace quillmoth::markdown
