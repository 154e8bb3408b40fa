#pragma once

#include <functional>
#include <optional>

#include "MarkdownUI/Style/ListMarker.h"
#include "MarkdownUI/Style/TextStyle.h"

namespace quillmoth::markdown {

struct RelativeEdges {
    RelativeSize leading = RelativeSize::zero;
    RelativeSize trailing = RelativeSize::zero;
    RelativeSize top = RelativeSize::zero;
    RelativeSize bottom = RelativeSize::zero;
};

/// How a kind of block looks. The margins are resolved against the font around the block; all else against
/// that of its own text style.
struct BlockStyle {
    AnyTextStyle textStyle;
    RelativeSize lineSpacing = RelativeSize::zero; ///< between two lines
    RelativeEdges padding;
    /// Absent means unspecified.
    std::optional<RelativeSize> marginTop;
    std::optional<RelativeSize> marginBottom;
};

/// `row` 0 is the header row.
struct TableCellConfiguration {
    std::size_t row = 0;
    std::size_t column = 0;
};

using TableCellStyle = std::function<BlockStyle(const TableCellConfiguration&)>;

/// In points; absent means unspecified.
struct BlockMargin {
    std::optional<double> top;
    std::optional<double> bottom;

    bool operator==(const BlockMargin&) const = default;
};

/// The margin of a view that holds both: the larger of each side.
[[nodiscard]] BlockMargin combined(const BlockMargin& first, const BlockMargin& second);

/// What stands above a block that is not the first of its sequence. `before` is the margin of the block
/// above, whose bottom counts as 0 where spacing is tight.
[[nodiscard]] double spaceBetween(const BlockMargin& before, const BlockMargin& block, bool isTight);

/// The platform's padding where nothing else is said.
constexpr double kDefaultPadding = 16;

} // namespace quillmoth::markdown
