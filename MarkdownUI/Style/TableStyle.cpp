#include "MarkdownUI/Style/TableStyle.h"

namespace quillmoth::markdown {

namespace {

std::vector<Rect> outsideRectangles(const TableBounds& table, double borderWidth) {
    const Rect& all = table.bounds;
    return {{all.x, all.y, all.width, borderWidth},
            {all.x, all.bottom() - borderWidth, all.width, borderWidth},
            {all.x, all.y, borderWidth, all.height},
            {all.right() - borderWidth, all.y, borderWidth, all.height}};
}

std::vector<Rect> insideRectangles(const TableBounds& table, double borderWidth) {
    const Rect& all = table.bounds;
    std::vector<Rect> result;
    for (std::size_t i = 1; i < table.rows.size(); ++i)
        result.push_back({all.x, table.rows[i].minY - borderWidth, all.width, borderWidth});
    for (std::size_t i = 1; i < table.columns.size(); ++i) {
        // In a table that runs from right to left the gap is at the other side.
        const auto& [x, width] = table.columns[i];
        const double gap = x > table.columns[i - 1].minX ? x - borderWidth : x + width;
        result.push_back({gap, all.y, borderWidth, all.height});
    }
    return result;
}

std::vector<Rect> allRectangles(const TableBounds& table, double borderWidth) {
    std::vector<Rect> result = outsideRectangles(table, borderWidth);
    const std::vector<Rect> inside = insideRectangles(table, borderWidth);
    result.insert(result.end(), inside.begin(), inside.end());
    return result;
}

} // namespace

TableBorderSelector TableBorderSelector::allBorders() {
    return {allRectangles};
}

TableBackgroundStyle TableBackgroundStyle::clear() {
    return {[](std::size_t, std::size_t) { return Color(SemanticColor::clear); }};
}

} // namespace quillmoth::markdown
