#include "MarkdownUI/Style/BlockStyle.h"

#include <algorithm>
#include <utility>

namespace quillmoth::markdown {

namespace {

std::optional<double> larger(std::optional<double> first, std::optional<double> second) {
    return std::max(first, second); // an absent value is less than any other
}

} // namespace

BlockView::BlockView(AttributeContainer around)
    : attributes(std::move(around)), around_(*attributes.fontProperties) {}

BlockView& BlockView::markdownTextStyle(const AnyTextStyle& textStyle) {
    textStyle._collectAttributes(attributes);
    return *this;
}

BlockView& BlockView::relativeLineSpacing(RelativeSize length) {
    lineSpacing = length.points(*attributes.fontProperties);
    return *this;
}

BlockView& BlockView::relativePadding(Edges edges, RelativeSize length) {
    const double points = length.points(*attributes.fontProperties);
    if (edges == Edges::leading || edges == Edges::horizontal)
        leading += points;
    if (edges == Edges::trailing || edges == Edges::horizontal)
        trailing += points;
    if (edges == Edges::vertical) {
        top += points;
        bottom += points;
    }
    return *this;
}

BlockView& BlockView::markdownMargin(std::optional<RelativeSize> marginTop,
                                     std::optional<RelativeSize> marginBottom) {
    BlockMargin given;
    if (marginTop)
        given.top = marginTop->points(around_);
    if (marginBottom)
        given.bottom = marginBottom->points(around_);
    margin = combined(margin, given);
    return *this;
}

BlockView unchanged(BlockConfiguration block) {
    return std::move(block.label);
}

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
