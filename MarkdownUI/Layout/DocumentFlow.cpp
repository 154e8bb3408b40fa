#include "MarkdownUI/Layout/DocumentFlow.h"

#include "MarkdownUI/Layout/BlockSequence.h"

#include <algorithm>

namespace quillmoth::markdown {

ListMarker makeMarker(const FlowMarker& marker, const Theme& theme) {
    switch (marker.kind) {
    case FlowMarker::Kind::task:
        return theme.taskListMarker({marker.isCompleted});
    case FlowMarker::Kind::numbered:
        return theme.numberedListMarker({marker.listLevel, marker.number});
    default:
        return theme.bulletedListMarker({marker.listLevel, marker.number});
    }
}

std::size_t DocumentFlow::unitOfTextBlock(std::size_t block) const {
    const auto behind = std::ranges::partition_point(units, [block](const FlowUnit& unit) {
        return std::size_t{unit.firstTextBlock} + unit.textBlockCount <= block;
    });
    return static_cast<std::size_t>(behind - units.begin());
}

DocumentFlow makeFlow(const Blocks& values, const Theme& theme, const AttributeContainer& root,
                      MarkerMeasure& measure) {
    DocumentFlow flow;
    flow.bags.push_back(root);
    FlowBuilder builder(theme, measure, flow);
    addBlocks(builder, values, {});
    return flow;
}

} // namespace quillmoth::markdown
