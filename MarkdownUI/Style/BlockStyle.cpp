#include "MarkdownUI/Style/BlockStyle.h"

#include <algorithm>

namespace quillmoth::markdown {

namespace {

std::optional<double> larger(std::optional<double> first, std::optional<double> second) {
    return std::max(first, second); // an absent value is less than any other
}

} // namespace

BlockMargin combined(const BlockMargin& first, const BlockMargin& second) {
    return {larger(first.top, second.top), larger(first.bottom, second.bottom)};
}

double spaceBetween(const BlockMargin& before, const BlockMargin& block, bool isTight) {
    std::optional<double> bottom = before.bottom;
    if (bottom && isTight)
        bottom = 0;
    return larger(block.top, bottom).value_or(kDefaultPadding);
}

} // namespace quillmoth::markdown
