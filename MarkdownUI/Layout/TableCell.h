#pragma once

#include "MarkdownUI/Layout/Box.h"
#include "MarkdownUI/Layout/TableColumns.h"

namespace quillmoth::markdown {

/// A cell of a table: rows of images if it holds nothing else, otherwise text.
class TableCell {
public:
    /// What a cell has added to its box.
    struct Content {
        std::size_t firstFragment = 0;
        std::size_t firstDecoration = 0;
        std::size_t endFragment = 0;
        std::size_t endDecoration = 0;
        double height = 0; ///< with padding
    };

    /// `unit` is any row of the table. All outlive the cell.
    TableCell(const LayoutContext& context, const FlowUnit& unit, std::size_t row, std::size_t column);

    [[nodiscard]] const BlockView& view() const { return view_; }

    /// Both widths together.
    [[nodiscard]] double padding() const { return view_.leading + view_.trailing; }

    [[nodiscard]] const FontProperties& font() const { return *view_.attributes.fontProperties; }

    /// In a table that is `width` wide.
    [[nodiscard]] ColumnNeeds needs(double width) const;

    /// Lays it out at the top of its row, at `top`, in its column.
    [[nodiscard]] Content addTo(Box& box, const ColumnFrame& column, double top) const;

private:
    [[nodiscard]] const blocks::Table& table() const { return *context_.flow.groups[unit_.group].table; }

    [[nodiscard]] const Inlines& inlines() const { return table().rows[row_][column_]; }

    [[nodiscard]] bool isOfImages() const;

    const LayoutContext& context_;
    const FlowUnit& unit_;
    std::size_t row_;
    std::size_t column_;
    BlockView view_;
};

} // namespace quillmoth::markdown
