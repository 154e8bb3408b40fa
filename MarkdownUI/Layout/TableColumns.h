#pragma once

#include "MarkdownUI/Layout/Box.h"

namespace quillmoth::markdown {

/// What a cell or column takes, with padding.
struct ColumnNeeds {
    double least = 0; ///< of the longest word
    double ideal = 0; ///< of the longest cell in one line
};

/// Measures the columns of the table that `unit` is a row of, and shares out the room that there is.
[[nodiscard]] TableColumns makeColumns(const LayoutContext& context, const FlowUnit& unit);

} // namespace quillmoth::markdown
