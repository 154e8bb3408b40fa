#include "MarkdownUI/Layout/CodeBlockGeometry.h"

#include <cmath>

#include "MarkdownUI/Layout/DocumentState.h"
#include "MarkdownUI/Layout/ScrollRegion.h"

namespace quillmoth::markdown {

namespace {

constexpr double kButtonHeight = 24;
constexpr double kButtonPadding = 8;
constexpr double kButtonRight = 8;
constexpr double kButtonTop = 6;
constexpr double kButtonSymbol = 14;
constexpr double kButtonSpacing = 5;

} // namespace

Font copyButtonFont() {
    return {.size = 12, .weight = FontProperties::Weight::medium};
}

std::string copyButtonLabel(const DocumentState& state, std::size_t codeBlock) {
    return state.justCopied[codeBlock] ? kCopiedLabel : kCopyLabel;
}

ButtonItem copyButton(DocumentState& state, std::size_t codeBlock) {
    const Rect block = scrollRegionOf(state, state.flow().codeBlocks[codeBlock]).frame;
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
    button.isDone = state.justCopied[codeBlock];
    button.symbol = button.isDone ? "checkmark" : "doc.on.doc";
    button.label = copyButtonLabel(state, codeBlock);
    button.codeBlock = codeBlock;
    return button;
}

} // namespace quillmoth::markdown
