#include "MarkdownUI/CodeBlockGeometry.h"

#include <algorithm>
#include <cmath>

#include "MarkdownUI/DocumentState.h"

namespace quillmoth::markdown {

namespace {

constexpr double kButtonHeight = 24;
constexpr double kButtonPadding = 8;
constexpr double kButtonRight = 8;
constexpr double kButtonTop = 6;
constexpr double kButtonSymbol = 14;
constexpr double kButtonSpacing = 5;

const FlowGroup& groupOf(const DocumentState& state, std::size_t codeBlock) {
    return state.flow().groups[state.flow().codeBlocks[codeBlock]];
}

/// Exact when all of the block has been seen; before that the longest line counts with an advance a byte.
double codeWidth(const DocumentState& state, std::size_t codeBlock) {
    const FlowGroup& group = groupOf(state, codeBlock);
    const GroupState& seen = state.group(state.flow().codeBlocks[codeBlock]);
    if (seen.unitsSeen == group.endUnit - group.firstUnit)
        return seen.codeWidth;
    const FlowUnit& unit = state.flow().units[group.firstUnit];
    const FontMetrics metrics = state.context().engine.metricsOf(makeFont(state.flow().fontOf(unit)));
    return std::max(seen.codeWidth, static_cast<double>(group.longestLine) * metrics.averageAdvance);
}

} // namespace

Font copyButtonFont() {
    return {.size = 12, .weight = FontProperties::Weight::medium};
}

Rect codeBlockFrame(const DocumentState& state, std::size_t codeBlock) {
    const FlowGroup& group = groupOf(state, codeBlock);
    const ColumnFrame frame = contentFrame(state.context(), state.flow().units[group.firstUnit]);
    const double top = state.contentTop(group.firstUnit);
    return {frame.x, top, frame.width, state.heights().top(group.endUnit) - top};
}

ScrollRegionItem codeScrollRegion(const DocumentState& state, std::size_t codeBlock) {
    ScrollRegionItem region;
    region.frame = codeBlockFrame(state, codeBlock);
    region.contentWidth =
        std::max(region.frame.width, std::ceil(codeWidth(state, codeBlock)) + 2 * kCodePadding);
    region.offset =
        std::clamp(state.codeViews[codeBlock].scrollOffset, 0.0, region.contentWidth - region.frame.width);
    region.codeBlock = codeBlock;
    return region;
}

ButtonItem copyButton(DocumentState& state, std::size_t codeBlock) {
    const Rect block = codeBlockFrame(state, codeBlock);
    const Size label = state.copyLabelSize();
    const double width =
        std::ceil(kButtonPadding + kButtonSymbol + kButtonSpacing + label.width + kButtonPadding);
    ButtonItem button;
    button.frame = {block.right() - kButtonRight - width, block.y + kButtonTop, width, kButtonHeight};
    button.symbolFrame = {button.frame.x + kButtonPadding,
                          button.frame.y + (kButtonHeight - kButtonSymbol) / 2, kButtonSymbol, kButtonSymbol};
    button.labelOrigin = {button.symbolFrame.right() + kButtonSpacing,
                          button.frame.y + (kButtonHeight - label.height) / 2};
    button.font = copyButtonFont();
    button.isDone = state.codeViews[codeBlock].isJustCopied;
    button.symbol = button.isDone ? "checkmark" : "doc.on.doc";
    button.label = button.isDone ? kCopiedLabel : kCopyLabel;
    button.codeBlock = codeBlock;
    return button;
}

} // namespace quillmoth::markdown
