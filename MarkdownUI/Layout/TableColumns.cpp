#include "MarkdownUI/Layout/TableColumns.h"

#include "MarkdownUI/Layout/PlainText.h"
#include "MarkdownUI/Layout/TableCell.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace quillmoth::markdown {

namespace {

/// A longer word is broken rather than that its table scrolls.
constexpr RelativeSize kLongestWord = RelativeSize::em(12);
/// A table that scrolls may take this many times the room, so that it is not too high for it.
constexpr double kWidestTable = 1.5;

/// Of a larger table only the longest cells of each column are measured.
constexpr std::size_t kMostCellsMeasured = 600;
constexpr std::size_t kCellsMeasuredOfColumn = 8;

/// The rows whose cells in `column` are measured.
std::vector<std::size_t> measuredRows(const blocks::Table& table, std::size_t column) {
    std::vector<std::size_t> rows;
    for (std::size_t row = 0; row < table.rows.size(); ++row) {
        if (column < table.rows[row].size())
            rows.push_back(row);
    }
    if (rows.size() * table.columnAlignments.size() > kMostCellsMeasured &&
        rows.size() > kCellsMeasuredOfColumn) {
        const auto isLonger = [&](std::size_t first, std::size_t second) {
            return sizeOf(table.rows[first][column]).bytes > sizeOf(table.rows[second][column]).bytes;
        };
        std::ranges::partial_sort(rows, rows.begin() + kCellsMeasuredOfColumn, isLonger);
        rows.resize(kCellsMeasuredOfColumn);
    }
    return rows;
}

ColumnNeeds needsOfColumn(const LayoutContext& context, const FlowUnit& unit, std::size_t column,
                          double width) {
    ColumnNeeds needs;
    for (const std::size_t row : measuredRows(*context.flow.groups[unit.group].table, column)) {
        const ColumnNeeds cell = TableCell(context, unit, row, column).needs(width);
        needs.least = std::max(needs.least, cell.least);
        needs.ideal = std::max(needs.ideal, cell.ideal);
    }
    needs.least = std::min(needs.least, needs.ideal);
    return needs;
}

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

/// Columns of those widths, one border apart, in reading order.
TableColumns placed(const LayoutContext& context, const FlowUnit& unit, const std::vector<double>& widths,
                    double border) {
    const ColumnFrame frame = contentFrame(context, unit);
    TableColumns result;
    result.bounds.width =
        std::accumulate(widths.begin(), widths.end(), border * static_cast<double>(widths.size() + 1));
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

} // namespace

TableColumns makeColumns(const LayoutContext& context, const FlowUnit& unit) {
    const double width = contentFrame(context, unit).width;
    const double border = context.theme.tableBorderStyle.strokeStyle.lineWidth;
    const std::size_t count = context.flow.groups[unit.group].table->columnAlignments.size();
    std::vector<ColumnNeeds> needs;
    for (std::size_t column = 0; column < count; ++column)
        needs.push_back(needsOfColumn(context, unit, column, width));
    const TableCell any(context, unit, 1, 0);
    double room = width - border * static_cast<double>(count + 1);
    if (!fitsWithBrokenWords(needs, kLongestWord.points(any.font()) + any.padding(), room)) {
        const auto least = [](double sum, const ColumnNeeds& column) { return sum + column.least; };
        room = std::max(std::accumulate(needs.begin(), needs.end(), 0.0, least), kWidestTable * room);
    }
    const double floor = any.padding() + any.font().scaledSize();
    return placed(context, unit, distribute(needs, room, floor), border);
}

} // namespace quillmoth::markdown
