#include "MarkdownUI/Layout/FlowBuilder.h"

namespace quillmoth::markdown {

FlowContext FlowBuilder::inside(const BlockStyle& style, const FlowContext& context) {
    const StyledBlock& block = applyBlockStyle_(style, context.bag);
    FlowContext inner = context;
    inner.bag = block.bag;
    inner.leading += block.view.leading;
    inner.trailing += block.view.trailing;
    return inner;
}

FlowUnit& FlowBuilder::addUnit(FlowUnit::Kind kind, const FlowContext& context) {
    FlowUnit& unit = flow_.units.emplace_back();
    unit.kind = kind;
    unit.direction = direction;
    unit.bag = context.bag;
    unit.leading = static_cast<float>(context.leading);
    unit.trailing = static_cast<float>(context.trailing);
    unit.firstTextBlock = static_cast<std::uint32_t>(flow_.textBlockCount);
    unit.firstMarker = static_cast<std::uint32_t>(flow_.markers.size());
    if (kind == FlowUnit::Kind::nothing)
        return unit;
    unit.markerCount = static_cast<std::uint32_t>(waitingMarkers_.size());
    flow_.markers.insert(flow_.markers.end(), waitingMarkers_.begin(), waitingMarkers_.end());
    waitingMarkers_.clear();
    return unit;
}

FlowGroup& FlowBuilder::addGroup() {
    FlowGroup& group = flow_.groups.emplace_back();
    group.firstUnit = group.endUnit = flow_.units.size();
    return group;
}

void FlowBuilder::addPart(FlowUnit::Kind kind, const FlowUnit& prototype, const FlowContext& context) {
    const bool isFirst = flow_.groups.back().firstUnit == flow_.units.size();
    FlowUnit& unit = addUnit(kind, context);
    FlowUnit placed = prototype;
    placed.kind = unit.kind;
    placed.direction = unit.direction;
    placed.bag = unit.bag;
    placed.group = static_cast<std::uint32_t>(flow_.groups.size() - 1);
    placed.leading = unit.leading;
    placed.trailing = unit.trailing;
    placed.firstMarker = unit.firstMarker;
    placed.markerCount = unit.markerCount;
    placed.firstTextBlock = unit.firstTextBlock - (isFirst ? 0 : 1);
    placed.textBlockCount = 1;
    unit = placed;
    flow_.textBlockCount += isFirst ? 1 : 0;
    flow_.groups.back().endUnit = flow_.units.size();
}

} // namespace quillmoth::markdown
