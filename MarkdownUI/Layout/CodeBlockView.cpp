#include "MarkdownUI/Layout/CodeBlockView.h"

#include "MarkdownUI/Layout/DocumentState.h"
#include "MarkdownUI/Layout/ScrollRegion.h"

#include <algorithm>
#include <cmath>

namespace quillmoth::markdown {

namespace {

constexpr std::size_t kCodeLinesOfUnit = 48;

constexpr double kButtonHeight = 24;
constexpr double kButtonPadding = 8;
constexpr double kButtonRight = 8;
constexpr double kButtonTop = 6;
constexpr double kButtonSymbol = 14;
constexpr double kButtonSpacing = 5;

/// Code runs from left to right wherever it stands, so its own padding is at its left.
FlowContext insideCode(FlowBuilder& flow, const FlowContext& context) {
    FlowContext inner = flow.inside(flow.theme().codeBlock, context);
    if (flow.direction == TextDirection::rightToLeft) {
        const double leading = inner.leading - context.leading;
        const double trailing = inner.trailing - context.trailing;
        inner.leading += trailing - leading;
        inner.trailing += leading - trailing;
    }
    return inner;
}

/// With colours, and in `font` where the highlighter says nothing else.
AttributedText highlighted(const LayoutContext& context, const blocks::CodeBlock& code, const Font& font) {
    const PlainTextCodeSyntaxHighlighter plain;
    const CodeSyntaxHighlighter& highlighter = context.highlighter != nullptr ? *context.highlighter : plain;
    AttributedText text = highlighter.highlightCode(withoutFinalLineFeed(code.content), code.info);
    text.editAttributes([&font](AttributeContainer& attributes) {
        if (!attributes.font)
            attributes.font = font;
    });
    return text;
}

} // namespace

void CodeBlockView::addTo(FlowBuilder& flow, const FlowContext& context) const {
    const FlowContext inner = insideCode(flow, context);
    const std::string_view text = withoutFinalLineFeed(code_.content);
    flow.flow().codeBlocks.push_back(static_cast<std::uint32_t>(flow.flow().groups.size()));
    FlowGroup& group = flow.addGroup();
    group.code = &code_;
    std::size_t end = 0;
    for (bool isLast = false; !isLast;) {
        FlowUnit unit;
        unit.lineSpacing = static_cast<float>(flow.styled(flow.theme().codeBlock, context).lineSpacing);
        unit.textBegin = static_cast<std::uint32_t>(end);
        for (std::size_t line = 0; line < kCodeLinesOfUnit && !isLast; ++line) {
            const std::size_t feed = std::min(text.find('\n', end), text.size());
            group.longestLine = std::max(group.longestLine, feed - end);
            isLast = feed == text.size();
            end = isLast ? feed : feed + 1;
            unit.lineBreaks += isLast ? 0 : 1;
        }
        unit.textEnd = static_cast<std::uint32_t>(end);
        flow.addPart(FlowUnit::Kind::code, unit, inner);
    }
}

double CodeBlockView::estimatedHeight(const LayoutContext& context, const FlowUnit& unit) {
    const bool isLast = context.flow.isLastOfGroup(unit);
    const double lines = unit.lineBreaks + (isLast ? 1.0 : 0.0);
    return lines * (lineHeightOf(context, unit) + unit.lineSpacing) +
           (context.flow.isFirstOfGroup(unit) ? kCodePadding + kCodeButtonRoom : 0) +
           (isLast ? kCodePadding - unit.lineSpacing : 0);
}

void CodeBlockView::layOut(const LayoutContext& context, const FlowUnit& unit, GroupState& group, Box& box) {
    const Font font = makeFont(context.flow.fontOf(unit));
    if (!group.text)
        group.text = highlighted(context, *context.flow.groups[unit.group].code, font);
    const bool isFirst = context.flow.isFirstOfGroup(unit);
    const bool isLast = context.flow.isLastOfGroup(unit);
    // The line feed at the end of a part would make one more line.
    AttributedText text = group.text->substring(unit.textBegin, unit.textEnd - (isLast ? 0 : 1));
    const ColumnFrame frame = contentFrame(context, unit);
    const Point origin{frame.x + kCodePadding, isFirst ? kCodePadding + kCodeButtonRoom : 0};
    const Size size = addFragment(context, std::move(text), {.lineSpacing = unit.lineSpacing, .font = font},
                                  origin, unit.firstTextBlock, box);
    box.fragments.back().textOffset = unit.textBegin;
    box.height = origin.y + size.height + (isLast ? kCodePadding : unit.lineSpacing);
    box.right = frame.x + frame.width;
    group.codeWidth = std::max(group.codeWidth, size.width);
}

Font copyButtonFont() {
    return {.size = 12, .weight = FontProperties::Weight::medium};
}

std::string copyButtonLabel(const DocumentState& state, std::size_t codeBlock) {
    return state.justCopy[codeBlock] ? kCopiedLabel : kCopyLabel;
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
    button.isDone = state.justCopy[codeBlock];
    button.symbol = button.isDone ? "checkmark" : "doc.on.doc";
    button.label = copyButtonLabel(state, codeBlock);
    button.codeBlock = codeBlock;
    return button;
}

} // namespace quillmoth::markdown
