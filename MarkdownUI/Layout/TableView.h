#pragma once

#include "MarkdownUI/Layout/Box.h"
#include "MarkdownUI/Layout/FlowBuilder.h"
#include "MarkdownUI/Style/TableStyle.h"

namespace quillmoth::markdown {

/// A table, laid out row by row. The rows are the units of one group, which share their columns.
class TableView {
public:
    explicit TableView(const blocks::Table& table) : table_(table) {}

    /// In a context within the style of tables.
    void addTo(FlowBuilder& flow, const FlowContext& context) const;

    [[nodiscard]] static double estimatedRowHeight(const LayoutContext& context, const FlowUnit& unit);
    static void layOutRow(const LayoutContext& context, const FlowUnit& unit, GroupState& group, Box& box);

private:
    const blocks::Table& table_;
};

/// What is behind the cells of a table.
class TableBackgroundView {
public:
    explicit TableBackgroundView(const TableBackgroundStyle& style) : style_(style) {} ///< outlives this

    /// Adds a fill for each cell that has one. `firstRow` is the table's row that `bounds` starts with.
    void addTo(DisplayList& list, const TableBounds& bounds, std::size_t firstRow) const;

private:
    const TableBackgroundStyle& style_;
};

/// The borders of a table, over its cells.
class TableBorderView {
public:
    explicit TableBorderView(const TableBorderStyle& style) : style_(style) {} ///< outlives this

    [[nodiscard]] double width() const { return style_.strokeStyle.lineWidth; }

    [[nodiscard]] std::vector<RectangleItem> lines(const TableBounds& bounds) const;

private:
    const TableBorderStyle& style_;
};

} // namespace quillmoth::markdown
