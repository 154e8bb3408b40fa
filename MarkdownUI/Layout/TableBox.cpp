#include <algorithm>
#include <cmath>
#include <numeric>

#include "MarkdownUI/Layout/Box.h"
#include "MarkdownUI/Layout/PlainText.h"
#include "MarkdownUI/Layout/ScrollRegion.h"
#include "MarkdownUI/Layout/TextDirection.h"

namespace quillmoth::markdown {

namespace {

/// A longer word is broken rather than that its table scrolls.
constexpr RelativeSize kLongestWord = RelativeSize::em(12);
/// A table that scrolls may take this many times the room, so that it is not too high for it.
constexpr double kWidestTable = 1.5;

/// Of a larger table only the longest cells of each column are measured.
constexpr std::size_t kMostCellsMeasured = 600;
constexpr std::size_t kCellsMeasuredOfColumn = 8;

/// A cell as its style makes it.
struct CellStyle {
    AttributeContainer bag;
    double lineSpacing = 0;
    double leading = 0;
    double trailing = 0;
    double top = 0;
    double bottom = 0;
};

CellStyle cellStyle(const LayoutContext& context, const FlowUnit& unit, std::size_t row, std::size_t column) {
    const BlockStyle style = context.theme.tableCell({row, column});
    CellStyle cell;
    cell.bag = collecting(style.textStyle, context.bagOf(unit));
    const FontProperties& font = *cell.bag.fontProperties;
    cell.lineSpacing = style.lineSpacing.points(font);
    cell.leading = style.padding.leading.points(font);
    cell.trailing = style.padding.trailing.points(font);
    cell.top = style.padding.top.points(font);
    cell.bottom = style.padding.bottom.points(font);
    return cell;
}

/// Widths with padding.
struct ColumnNeeds {
    double least = 0; ///< of the longest word
    double ideal = 0; ///< of the longest cell in one line
};

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

/// Measures tables column by column.
class ColumnMeasure {
public:
    ColumnMeasure(const LayoutContext& context, const FlowUnit& unit, const blocks::Table& table)
        : context_(context), unit_(unit), table_(table), all_(contentFrame(context, unit).width) {}

    [[nodiscard]] ColumnNeeds needsOf(std::size_t column) const {
        ColumnNeeds needs;
        for (const std::size_t row : measuredRows(column)) {
            const ColumnNeeds cell = needsOfCell(row, column);
            needs.least = std::max(needs.least, cell.least);
            needs.ideal = std::max(needs.ideal, cell.ideal);
        }
        needs.least = std::min(needs.least, needs.ideal);
        return needs;
    }

private:
    [[nodiscard]] std::vector<std::size_t> measuredRows(std::size_t column) const {
        std::vector<std::size_t> rows;
        for (std::size_t row = 0; row < table_.rows.size(); ++row) {
            if (column < table_.rows[row].size())
                rows.push_back(row);
        }
        if (rows.size() * table_.columnAlignments.size() > kMostCellsMeasured &&
            rows.size() > kCellsMeasuredOfColumn) {
            const auto isLonger = [&](std::size_t first, std::size_t second) {
                return sizeOf(table_.rows[first][column]).bytes > sizeOf(table_.rows[second][column]).bytes;
            };
            std::ranges::partial_sort(rows, rows.begin() + kCellsMeasuredOfColumn, isLonger);
            rows.resize(kCellsMeasuredOfColumn);
        }
        return rows;
    }

    [[nodiscard]] ColumnNeeds needsOfCell(std::size_t row, std::size_t column) const {
        const Inlines& values = table_.rows[row][column];
        const CellStyle style = cellStyle(context_, unit_, row, column);
        const double padding = style.leading + style.trailing;
        if (!values.empty() && isImageFlow(values)) {
            Box box;
            const double width =
                addImageFlow(context_, values, *style.bag.fontProperties, {0, all_}, 0, false, box).width;
            return {std::min(width, style.bag.fontProperties->size * 2) + padding, width + padding};
        }
        const AttributedText text = textOfInlines(context_, values, style.bag, all_);
        const ColumnNeeds needs = needsOfText(context_, text);
        return {needs.least + padding, needs.ideal + padding};
    }

    const LayoutContext& context_;
    const FlowUnit& unit_;
    const blocks::Table& table_;
    double all_;
};

/// The width that no column may pass so that all together fit into `room`; those below it keep what they
/// need.
double greatestWidth(std::vector<ColumnNeeds> needs, double room) {
    std::ranges::sort(needs, {}, &ColumnNeeds::least);
    for (std::size_t i = 0; i < needs.size(); ++i) {
        const double share = room / static_cast<double>(needs.size() - i);
        if (needs[i].least > share)
            return std::floor(share);
        room -= needs[i].least;
    }
    return room;
}

/// Widths for columns whose least fits into `room`, but not their ideal: those that need no more than an
/// equal share are not wrapped; the others share the rest in proportion to what they lack.
std::vector<double> sharedWidths(const std::vector<ColumnNeeds>& needs, double room) {
    std::vector<std::size_t> order(needs.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::sort(order, {}, [&needs](std::size_t column) { return needs[column].ideal; });
    std::vector<double> widths;
    double spare = room;
    double lacking = 0;
    for (const ColumnNeeds& column : needs) {
        widths.push_back(column.least);
        spare -= column.least;
        lacking += column.ideal - column.least;
    }
    std::size_t next = 0;
    for (; next < order.size(); ++next) {
        const ColumnNeeds& column = needs[order[next]];
        const double lack = column.ideal - column.least;
        if (column.ideal > room / static_cast<double>(order.size() - next) || lack > spare)
            break;
        widths[order[next]] = column.ideal;
        room -= column.ideal;
        spare -= lack;
        lacking -= lack;
    }
    for (; next < order.size(); ++next) {
        const ColumnNeeds& column = needs[order[next]];
        widths[order[next]] += std::floor(spare * (column.ideal - column.least) / std::max(lacking, 1.0));
    }
    return widths;
}

/// The ideal widths if there is room for them. Where not even the least fits, the widest columns break their
/// words, so that the others need not; but none gets less than `floor`.
std::vector<double> distribute(const std::vector<ColumnNeeds>& needs, double room, double floor) {
    double least = 0;
    double ideal = 0;
    for (const ColumnNeeds& column : needs) {
        least += column.least;
        ideal += column.ideal;
    }
    if (ideal > room && least <= room)
        return sharedWidths(needs, room);
    const double most = std::max(greatestWidth(needs, room), floor);
    std::vector<double> widths;
    widths.reserve(needs.size());
    for (const ColumnNeeds& column : needs)
        widths.push_back(ideal <= room ? column.ideal : std::min(column.least, most));
    return widths;
}

/// What is needed where words longer than `longest` may be broken. False if that does not fit into `room`.
bool fitsWithBrokenWords(std::vector<ColumnNeeds>& needs, double longest, double room) {
    double least = 0;
    for (const ColumnNeeds& column : needs)
        least += std::min(column.least, longest);
    if (least <= room)
        return true;
    for (ColumnNeeds& column : needs)
        column.least = std::min(column.least, longest);
    return false;
}

TableColumns makeColumns(const LayoutContext& context, const FlowUnit& unit, const blocks::Table& table) {
    const ColumnFrame frame = contentFrame(context, unit);
    const double border = context.theme.tableBorderStyle.strokeStyle.lineWidth;
    const std::size_t count = table.columnAlignments.size();
    const ColumnMeasure measure(context, unit, table);
    std::vector<ColumnNeeds> needs;
    for (std::size_t column = 0; column < count; ++column)
        needs.push_back(measure.needsOf(column));
    const double borders = border * static_cast<double>(count + 1);
    const CellStyle style = cellStyle(context, unit, 1, 0);
    const double floor = style.leading + style.trailing + style.bag.fontProperties->scaledSize();
    double room = frame.width - borders;
    const double padding = style.leading + style.trailing;
    if (!fitsWithBrokenWords(needs, kLongestWord.points(*style.bag.fontProperties) + padding, room)) {
        const auto least = [](double sum, const ColumnNeeds& column) { return sum + column.least; };
        room = std::max(std::accumulate(needs.begin(), needs.end(), 0.0, least), kWidestTable * room);
    }
    const std::vector<double> widths = distribute(needs, room, floor);

    TableColumns result;
    result.bounds.width = std::accumulate(widths.begin(), widths.end(), borders);
    const bool isRightToLeft = unit.direction == TextDirection::rightToLeft;
    const double free = std::max(0.0, frame.width - result.bounds.width);
    double offset = 0;
    if (context.options.alignment != TextAlignment::leading)
        offset = context.options.alignment == TextAlignment::center ? std::floor(free / 2) : free;
    result.bounds.x = frame.x + (isRightToLeft ? free - offset : offset);
    double x = border;
    for (const double width : widths) {
        const double left = isRightToLeft ? result.bounds.width - x - width : x;
        result.columns.push_back({result.bounds.x + left, width});
        x += width + border;
    }
    return result;
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

/// What one cell has added to its box.
struct CellContent {
    std::size_t firstFragment = 0;
    std::size_t firstDecoration = 0;
    std::size_t endFragment = 0;
    std::size_t endDecoration = 0;
    double height = 0; ///< with padding
};

void moveDown(Box& box, const CellContent& cell, double distance) {
    for (std::size_t i = cell.firstFragment; i < cell.endFragment; ++i)
        box.fragments[i].origin.y += distance;
    for (std::size_t i = cell.firstDecoration; i < cell.endDecoration; ++i)
        std::get<ImageItem>(box.decorations[i]).frame.y += distance;
}

CellContent addCell(const LayoutContext& context, const FlowUnit& unit, const TableColumns& columns,
                    std::size_t column, double top, Box& box) {
    const blocks::Table& table = *context.flow.groups[unit.group].table;
    const Inlines& values = table.rows[unit.row][column];
    const CellStyle style = cellStyle(context, unit, unit.row, column);
    const bool isRightToLeft = unit.direction == TextDirection::rightToLeft;
    const ColumnFrame& outer = columns.columns[column];
    const ColumnFrame inner{outer.x + (isRightToLeft ? style.trailing : style.leading),
                            std::max(1.0, outer.width - style.leading - style.trailing)};
    CellContent content{.firstFragment = box.fragments.size(), .firstDecoration = box.decorations.size()};
    Size size;
    if (!values.empty() && isImageFlow(values)) {
        size = addImageFlow(context, values, *style.bag.fontProperties, inner, top + style.top, isRightToLeft,
                            box);
    } else {
        AttributedText text = textOfInlines(context, values, style.bag, inner.width);
        const TextDirection direction = firstStrongDirection(text.text()).value_or(unit.direction);
        const TextOptions options{inner.width, style.lineSpacing, direction,
                                  lineAlignment(table.columnAlignments[column], unit.direction, direction),
                                  makeFont(*style.bag.fontProperties)};
        size = addFragment(context, std::move(text), options, {inner.x, top + style.top},
                           unit.firstTextBlock + column, box);
    }
    content.endFragment = box.fragments.size();
    content.endDecoration = box.decorations.size();
    content.height = size.height + style.top + style.bottom;
    return content;
}

} // namespace

void addTableRow(const LayoutContext& context, const FlowUnit& unit, GroupState& group, Box& box) {
    const blocks::Table& table = *context.flow.groups[unit.group].table;
    if (!group.columns)
        group.columns = makeColumns(context, unit, table);
    const double border = context.theme.tableBorderStyle.strokeStyle.lineWidth;
    const double top = unit.row == 0 ? border : 0;
    const std::size_t count = std::min(table.rows[unit.row].size(), group.columns->columns.size());
    std::vector<CellContent> cells;
    double height = 0;
    for (std::size_t column = 0; column < count; ++column) {
        cells.push_back(addCell(context, unit, *group.columns, column, top, box));
        height = std::max(height, cells.back().height);
    }
    for (const CellContent& cell : cells)
        moveDown(box, cell, std::floor((height - cell.height) / 2));
    box.height = top + height + border;
    const ColumnFrame frame = contentFrame(context, unit);
    if (scrollsSideways(*group.columns, frame) && unit.row + 1 == table.rows.size())
        box.height += kTableBarRoom;
    box.right = std::min(group.columns->bounds.right(), frame.x + frame.width);
}

} // namespace quillmoth::markdown
