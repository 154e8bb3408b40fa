#pragma once

#include "MarkdownUI/Layout/Box.h"
#include "MarkdownUI/Layout/FlowBuilder.h"

namespace quillmoth::markdown {

class DocumentState;

/// A block of code: lines that do not wrap, on a fill with a bar at their left, below a copy button. It is
/// laid out some lines at a time, which are the units of one group.
class CodeBlockView {
public:
    explicit CodeBlockView(const blocks::CodeBlock& code) : code_(code) {}

    void addTo(FlowBuilder& flow, const FlowContext& context) const;

    [[nodiscard]] static double estimatedHeight(const LayoutContext& context, const FlowUnit& unit);
    static void layOut(const LayoutContext& context, const FlowUnit& unit, GroupState& group, Box& box);

private:
    const blocks::CodeBlock& code_;
};

/// Of a code block: text is that far from its edges, and further below its top.
constexpr double kCodePadding = kDefaultPadding;
constexpr double kCodeButtonRoom = 20;

constexpr const char* kCopyLabel = "Copy code";
constexpr const char* kCopiedLabel = "Copied";

[[nodiscard]] Font copyButtonFont();

/// What the button says now.
[[nodiscard]] std::string copyButtonLabel(const DocumentState& state, std::size_t codeBlock);

/// The blocks are counted in document order.
[[nodiscard]] ButtonItem copyButton(DocumentState& state, std::size_t codeBlock);

} // namespace quillmoth::markdown
