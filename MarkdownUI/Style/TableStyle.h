#pragma once

#include "MarkdownUI/Style/Color.h"
#include "MarkdownUI/Style/Geometry.h"

#include <functional>
#include <vector>

namespace quillmoth::markdown {

/// Where the rows and columns of a table are; `rows` may be just those in sight.
struct TableBounds {
    struct Row {
        double minY = 0;
        double height = 0;
    };

    struct Column {
        double minX = 0;
        double width = 0;
    };

    Rect bounds; ///< of the whole table, outer border included
    std::vector<Row> rows;
    std::vector<Column> columns;
};

/// Which borders of a table are seen.
struct TableBorderSelector {
    using Rectangles = std::function<std::vector<Rect>(const TableBounds& bounds, double borderWidth)>;

    Rectangles rectangles;

    [[nodiscard]] static TableBorderSelector allBorders();
};

/// Butt caps, miter joins, no dash.
struct StrokeStyle {
    double lineWidth = 1;
};

struct TableBorderStyle {
    TableBorderSelector visibleBorders = TableBorderSelector::allBorders();
    Color color = SemanticColor::secondary;
    StrokeStyle strokeStyle;
};

/// The fill of each cell.
struct TableBackgroundStyle {
    std::function<Color(std::size_t row, std::size_t column)> background;

    [[nodiscard]] static TableBackgroundStyle clear();
};

} // namespace quillmoth::markdown
