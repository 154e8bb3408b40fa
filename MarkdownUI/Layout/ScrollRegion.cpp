#include "MarkdownUI/Layout/ScrollRegion.h"

#include "MarkdownUI/Layout/CodeBlockView.h"
#include "MarkdownUI/Layout/DocumentState.h"

#include <algorithm>
#include <cmath>

namespace quillmoth::markdown {

namespace {

/// Exact when all of the block has been seen; before that the longest line counts with an advance a byte.
double codeWidth(const DocumentState& state, std::size_t index) {
    const FlowGroup& group = state.flow().groups[index];
    const GroupState& seen = state.group(index);
    if (seen.unitsSeen == group.endUnit - group.firstUnit)
        return seen.codeWidth;
    const FlowUnit& unit = state.flow().units[group.firstUnit];
    const FontMetrics metrics = state.context().engine.metricsOf(makeFont(state.flow().fontOf(unit)));
    return std::max(seen.codeWidth, static_cast<double>(group.longestLine) * metrics.averageAdvance);
}

double contentWidth(const DocumentState& state, std::size_t index) {
    if (state.flow().groups[index].code != nullptr)
        return std::ceil(codeWidth(state, index)) + 2 * kCodePadding;
    const auto& columns = state.group(index).columns;
    return columns ? columns->bounds.width : 0;
}

/// Tables of right-to-left text are read from their right end on.
bool startsAtTheRight(const DocumentState& state, std::size_t index) {
    const FlowGroup& group = state.flow().groups[index];
    return group.table != nullptr &&
           state.flow().units[group.firstUnit].direction == TextDirection::rightToLeft;
}

} // namespace

bool scrollsSideways(const TableColumns& columns, const ColumnFrame& frame) {
    return columns.bounds.width > frame.width + 0.5;
}

ScrollRegionItem scrollRegionOf(const DocumentState& state, std::size_t group) {
    const FlowGroup& flowGroup = state.flow().groups[group];
    const ColumnFrame frame = contentFrame(state.context(), state.flow().units[flowGroup.firstUnit]);
    const double top = state.contentTop(flowGroup.firstUnit);
    ScrollRegionItem region;
    region.frame = {frame.x, top, frame.width, state.heights().top(flowGroup.endUnit) - top};
    region.contentWidth = std::max(frame.width, contentWidth(state, group));
    const double range = region.contentWidth - frame.width;
    const double scrolled = std::clamp(state.scrolled[group], 0.0, range);
    region.offset = startsAtTheRight(state, group) ? range - scrolled : scrolled;
    region.group = group;
    region.isCode = flowGroup.code != nullptr;
    return region;
}

double scrollOffsetOfUnit(const DocumentState& state, std::size_t unit) {
    const FlowUnit& flowUnit = state.flow().units[unit];
    const bool scrolls = flowUnit.kind == FlowUnit::Kind::code || flowUnit.kind == FlowUnit::Kind::tableRow;
    return scrolls ? scrollRegionOf(state, flowUnit.group).offset : 0;
}

void setScrollOffset(DocumentState& state, std::size_t group, double offset) {
    ScrollRegionItem region = scrollRegionOf(state, group);
    const double range = region.contentWidth - region.frame.width;
    offset = std::clamp(offset, 0.0, range);
    state.scrolled[group] = startsAtTheRight(state, group) ? range - offset : offset;
}

} // namespace quillmoth::markdown
