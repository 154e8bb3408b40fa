#include "MarkdownUI/Layout/ListViews.h"

#include "MarkdownUI/Layout/BlockSequence.h"
#include "MarkdownUI/Layout/InlineText.h"

#include <algorithm>

namespace quillmoth::markdown {

namespace {

/// Between a marker's column and the item.
constexpr RelativeSize kMarkerSpacing = RelativeSize::em(0.5);

/// The context of a list's markers and items.
FlowContext insideList(FlowBuilder& flow, bool isTight, const FlowContext& context) {
    FlowContext list = flow.inside(flow.theme().listItem, context);
    list.listLevel = context.listLevel + 1;
    list.isTight = isTight;
    return list;
}

/// The width that a marker needs.
double ownWidth(FlowBuilder& flow, const FlowMarker& marker) {
    return flow.measure().widthOf(makeMarker(marker, flow.theme()), flow.flow().bags[marker.bag]);
}

/// The marker at the start of a list, in a column that it fits into.
FlowMarker firstMarker(FlowBuilder& flow, FlowMarker::Kind kind, const FlowContext& list,
                       std::int64_t number = 0) {
    FlowMarker marker{.kind = kind,
                      .bag = list.bag,
                      .listLevel = list.listLevel,
                      .number = number,
                      .leading = list.leading};
    const FontProperties& font = *flow.attributesOf(list).fontProperties;
    marker.width =
        std::max(makeMarker(marker, flow.theme()).relativeFrame.points(font), ownWidth(flow, marker));
    return marker;
}

BlockMargin addItem(FlowBuilder& flow, const Blocks& values, const FlowMarker& marker,
                    const FlowContext& list) {
    FlowContext item = list;
    item.leading += marker.width + kMarkerSpacing.points(*flow.attributesOf(list).fontProperties);
    flow.addMarker(marker);
    const BlockMargin margin = addBlocks(flow, values, item);
    if (flow.isMarkerWaiting())
        InlineText().addUnits(flow, item, 0); // an empty item still shows its marker
    return margin;
}

} // namespace

BlockMargin ListItemSequence::addTo(FlowBuilder& flow, const FlowContext& list) const {
    FlowMarker marker = first_;
    return BlockSequence(items_.size(),
                         [&](std::size_t index) {
                             marker.number = first_.number + static_cast<std::int64_t>(index);
                             return addItem(flow, items_[index].blocks, marker, list);
                         })
        .addTo(flow, list);
}

BlockMargin BulletedListView::addTo(FlowBuilder& flow, const FlowContext& context) const {
    const FlowContext list = insideList(flow, list_.tight, context);
    const FlowMarker marker = firstMarker(flow, FlowMarker::Kind::bulleted, list);
    return ListItemSequence(list_.items, marker).addTo(flow, list);
}

BlockMargin NumberedListView::addTo(FlowBuilder& flow, const FlowContext& context) const {
    const FlowContext list = insideList(flow, list_.tight, context);
    FlowMarker marker = firstMarker(flow, FlowMarker::Kind::numbered, list, list_.start);
    marker.width = markerWidth(flow, marker);
    return ListItemSequence(list_.items, marker).addTo(flow, list);
}

/// The width of the widest marker, which for digits of one width is the longest, at either end.
double NumberedListView::markerWidth(FlowBuilder& flow, FlowMarker marker) const {
    constexpr std::size_t kMostMeasured = 200;
    double width = marker.width;
    const std::size_t count = list_.items.size();
    marker.number += static_cast<std::int64_t>(count) - 1;
    for (std::size_t i = 0; i < std::min(count, kMostMeasured); ++i, --marker.number) {
        width = std::max(width, ownWidth(flow, marker));
        if (makeMarker(marker, flow.theme()).hasMonospacedDigits)
            break;
    }
    return width;
}

BlockMargin TaskListView::addTo(FlowBuilder& flow, const FlowContext& context) const {
    const FlowContext list = insideList(flow, list_.tight, context);
    FlowMarker marker = firstMarker(flow, FlowMarker::Kind::task, list);
    return BlockSequence(list_.items.size(),
                         [&](std::size_t index) {
                             marker.isCompleted = list_.items[index].isCompleted;
                             return addItem(flow, list_.items[index].blocks, marker, list);
                         })
        .addTo(flow, list);
}

} // namespace quillmoth::markdown
