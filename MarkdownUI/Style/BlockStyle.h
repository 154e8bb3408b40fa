#pragma once

#include "MarkdownUI/Style/TextStyle.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

namespace quillmoth::markdown {

/// In points; absent means unspecified.
struct BlockMargin {
    std::optional<double> top;
    std::optional<double> bottom;

    bool operator==(const BlockMargin&) const = default;
};

enum class Edges : std::uint8_t { leading, trailing, horizontal, vertical };

/// A block as its style has built it so far. Lengths are in points; those that a style gives are resolved
/// against the font in force where they are given, but margins against the font around the block.
struct BlockView {
    /// A block without any style, its text in the attributes around it, which have font properties.
    explicit BlockView(AttributeContainer around);

    BlockView& markdownTextStyle(const AnyTextStyle& textStyle);
    BlockView& relativeLineSpacing(RelativeSize length);
    BlockView& relativePadding(Edges edges, RelativeSize length);
    BlockView& markdownMargin(std::optional<RelativeSize> marginTop,
                              std::optional<RelativeSize> marginBottom);

    AttributeContainer attributes; ///< of its text
    double lineSpacing = 0;        ///< between two lines
    double leading = 0;            ///< padding
    double trailing = 0;
    double top = 0; ///< vertical padding counts in the cells of a table only
    double bottom = 0;
    BlockMargin margin;

private:
    FontProperties around_;
};

struct BlockConfiguration {
    BlockView label;
};

using BlockStyle = std::function<BlockView(BlockConfiguration block)>;

/// `row` 0 is the header row.
struct TableCellConfiguration {
    std::size_t row = 0;
    std::size_t column = 0;
    BlockView label;
};

using TableCellStyle = std::function<BlockView(TableCellConfiguration cell)>;

/// The style that leaves a block as it is.
[[nodiscard]] BlockView unchanged(BlockConfiguration block);

/// The margin of a view that holds both: the larger of each side.
[[nodiscard]] BlockMargin combined(const BlockMargin& first, const BlockMargin& second);

/// What stands above a block that is not the first of its sequence. `before` is the margin of the block
/// above, whose bottom counts as 0 where spacing is tight.
[[nodiscard]] double spaceBetween(const BlockMargin& before, const BlockMargin& block, bool isTight);

/// The platform's padding where nothing else is said.
constexpr double kDefaultPadding = 16;

} // namespace quillmoth::markdown
