#pragma once

#include "MarkdownUI/Layout/ApplyBlockStyle.h"
#include "MarkdownUI/Layout/DocumentFlow.h"
#include "MarkdownUI/Layout/MarkerMeasure.h"
#include "MarkdownUI/Style/Theme.h"

#include <cstdint>
#include <vector>

namespace quillmoth::markdown {

/// What containers hand down to the blocks in them.
struct FlowContext {
    std::uint32_t bag = 0; ///< the attributes around
    double leading = 0;    ///< insets
    double trailing = 0;
    bool isTight = false;
    int listLevel = 0;
};

/// Adds units to a flow, in document order.
class FlowBuilder {
public:
    /// All outlive the builder.
    FlowBuilder(const Theme& theme, MarkerMeasure& measure, DocumentFlow& flow)
        : theme_(theme), measure_(measure), flow_(flow), applyBlockStyle_(flow.bags) {}

    [[nodiscard]] const Theme& theme() const { return theme_; }

    [[nodiscard]] MarkerMeasure& measure() { return measure_; }

    [[nodiscard]] DocumentFlow& flow() { return flow_; }

    [[nodiscard]] const AttributeContainer& attributesOf(const FlowContext& context) const {
        return flow_.bags[context.bag];
    }

    /// A block of that style in `context`.
    [[nodiscard]] const BlockView& styled(const BlockStyle& style, const FlowContext& context) {
        return applyBlockStyle_(style, context.bag).view;
    }

    /// The context within such a block.
    [[nodiscard]] FlowContext inside(const BlockStyle& style, const FlowContext& context);

    /// The marker stands before the next unit that has lines.
    void addMarker(const FlowMarker& marker) { waitingMarkers_.push_back(marker); }

    [[nodiscard]] bool isMarkerWaiting() const { return !waitingMarkers_.empty(); }

    FlowUnit& addUnit(FlowUnit::Kind kind, const FlowContext& context);

    /// One more group, without units.
    FlowGroup& addGroup();

    /// Adds one more unit of the last group's one text block: `prototype`, placed in `context`.
    void addPart(FlowUnit::Kind kind, const FlowUnit& prototype, const FlowContext& context);

    /// That of the text before, which text without strong characters and what is no text take on.
    TextDirection direction = TextDirection::leftToRight;

private:
    const Theme& theme_;
    MarkerMeasure& measure_;
    DocumentFlow& flow_;
    ApplyBlockStyle applyBlockStyle_;
    std::vector<FlowMarker> waitingMarkers_;
};

} // namespace quillmoth::markdown
