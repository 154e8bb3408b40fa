#pragma once

#include "MarkdownUI/Layout/Box.h"
#include "MarkdownUI/Layout/FlowBuilder.h"

#include <string_view>

namespace quillmoth::markdown {

/// A text block that wraps: inlines, raw markup, or the empty line of an item without blocks. A long one is
/// laid out in parts, which are units of one group.
class InlineText {
public:
    InlineText() = default;
    /// What is shown outlives the flow. The level is that of a heading, 0 for none.
    explicit InlineText(const Inlines& inlines, int headingLevel = 0);

    explicit InlineText(std::string_view markup) : markup_(markup) {}

    /// In a block of that style, which stands in `context`.
    void addTo(FlowBuilder& flow, const BlockStyle& style, const FlowContext& context) const;
    void addUnits(FlowBuilder& flow, const FlowContext& inner, double lineSpacing) const;

    [[nodiscard]] static double estimatedHeight(const LayoutContext& context, const FlowUnit& unit);
    static void layOut(const LayoutContext& context, const FlowUnit& unit, GroupState& group, Box& box);

private:
    void addParts(FlowBuilder& flow, const FlowContext& inner, const FlowUnit& prototype) const;

    const Inlines* inlines_ = nullptr;
    std::string_view markup_;
    int headingLevel_ = 0;
};

/// The text of inlines with the images that are loaded, none of them wider than `width`.
[[nodiscard]] AttributedText textOfInlines(const LayoutContext& context, const Inlines& values,
                                           const AttributeContainer& bag, double width);

} // namespace quillmoth::markdown
