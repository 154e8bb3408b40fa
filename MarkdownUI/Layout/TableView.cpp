#include "MarkdownUI/Layout/TableView.h"

#include "MarkdownUI/Layout/ScrollRegion.h"
#include "MarkdownUI/Layout/TableCell.h"
#include "MarkdownUI/Layout/TableColumns.h"
#include "MarkdownUI/Layout/TextDirection.h"

#include <algorithm>
#include <cmath>

namespace quillmoth::markdown {

namespace {

/// That of the first header cell that has one.
std::optional<TextDirection> directionOf(const blocks::Table& table) {
    for (std::size_t cell = 0; !table.rows.empty() && cell < table.rows.front().size(); ++cell) {
        if (const auto found = firstStrongDirection(table.rows.front()[cell]))
            return found;
    }
    return std::nullopt;
}

void moveDown(Box& box, const TableCell::Content& cell, double distance) {
    for (std::size_t i = cell.firstFragment; i < cell.endFragment; ++i)
        box.fragments[i].origin.y += distance;
    for (std::size_t i = cell.firstDecoration; i < cell.endDecoration; ++i)
        std::get<ImageItem>(box.decorations[i]).frame.y += distance;
}

} // namespace

void TableView::addTo(FlowBuilder& flow, const FlowContext& context) const {
    const auto group = static_cast<std::uint32_t>(flow.flow().groups.size());
    flow.addGroup().table = &table_;
    flow.direction = directionOf(table_).value_or(flow.direction);
    for (std::size_t row = 0; row < table_.rows.size(); ++row) {
        FlowUnit& unit = flow.addUnit(FlowUnit::Kind::tableRow, context);
        unit.group = group;
        unit.row = static_cast<std::uint32_t>(row);
        unit.textBlockCount = static_cast<std::uint32_t>(table_.rows[row].size());
        flow.flow().textBlockCount += unit.textBlockCount;
    }
    flow.flow().groups.back().endUnit = flow.flow().units.size();
}

double TableView::estimatedRowHeight(const LayoutContext& context, const FlowUnit& unit) {
    const BlockView cell = context.theme.tableCell({unit.row, 0, BlockView(context.bagOf(unit))});
    const double border = TableBorderView(context.theme.tableBorderStyle).width();
    return lineHeightOf(context, unit) + cell.top + cell.bottom + border + (unit.row == 0 ? border : 0);
}

void TableView::layOutRow(const LayoutContext& context, const FlowUnit& unit, GroupState& group, Box& box) {
    const blocks::Table& table = *context.flow.groups[unit.group].table;
    if (!group.columns)
        group.columns = makeColumns(context, unit);
    const double border = TableBorderView(context.theme.tableBorderStyle).width();
    const double top = unit.row == 0 ? border : 0;
    const std::size_t count = std::min(table.rows[unit.row].size(), group.columns->columns.size());
    std::vector<TableCell::Content> cells;
    double height = 0;
    for (std::size_t column = 0; column < count; ++column) {
        const TableCell cell(context, unit, unit.row, column);
        cells.push_back(cell.addTo(box, group.columns->columns[column], top));
        height = std::max(height, cells.back().height);
    }
    for (const TableCell::Content& cell : cells)
        moveDown(box, cell, std::floor((height - cell.height) / 2));
    box.height = top + height + border;
    const ColumnFrame frame = contentFrame(context, unit);
    if (scrollsSideways(*group.columns, frame) && unit.row + 1 == table.rows.size())
        box.height += kTableBarRoom;
    box.right = std::min(group.columns->bounds.right(), frame.x + frame.width);
}

void TableBackgroundView::addTo(DisplayList& list, const TableBounds& bounds, std::size_t firstRow) const {
    for (std::size_t row = 0; row < bounds.rows.size(); ++row) {
        for (std::size_t column = 0; column < bounds.columns.size(); ++column) {
            const Color color = style_.background(firstRow + row, column);
            if (color == Color(SemanticColor::clear))
                continue;
            const auto& [x, width] = bounds.columns[column];
            const auto& [y, height] = bounds.rows[row];
            list.push_back(RectangleItem{{x, y, width, height}, color});
        }
    }
}

std::vector<RectangleItem> TableBorderView::lines(const TableBounds& bounds) const {
    std::vector<RectangleItem> result;
    for (const Rect& line : style_.visibleBorders.rectangles(bounds, width()))
        result.push_back({line, style_.color});
    return result;
}

} // namespace quillmoth::markdown
