#include "MarkdownUI/Layout/BlockSequence.h"

#include "MarkdownUI/Layout/CodeBlockView.h"
#include "MarkdownUI/Layout/HTMLBlockView.h"
#include "MarkdownUI/Layout/ImageFlow.h"
#include "MarkdownUI/Layout/InlineText.h"
#include "MarkdownUI/Layout/ListViews.h"
#include "MarkdownUI/Layout/TableView.h"

#include <algorithm>

namespace quillmoth::markdown {

namespace {

/// Adds a block of any kind, and gives its margin.
class BlockAdder {
public:
    BlockAdder(FlowBuilder& flow, const FlowContext& context)
        : flow_(flow), theme_(flow.theme()), context_(context) {}

    BlockMargin operator()(const blocks::Blockquote& quote) {
        const BlockMargin inner = addBlocks(flow_, quote.blocks, inside(theme_.blockquote));
        return combined(marginOf(theme_.blockquote), inner);
    }

    BlockMargin operator()(const blocks::TaskList& list) {
        return combined(marginOf(theme_.list), TaskListView(list).addTo(flow_, inside(theme_.list)));
    }

    BlockMargin operator()(const blocks::BulletedList& list) {
        return combined(marginOf(theme_.list), BulletedListView(list).addTo(flow_, inside(theme_.list)));
    }

    BlockMargin operator()(const blocks::NumberedList& list) {
        return combined(marginOf(theme_.list), NumberedListView(list).addTo(flow_, inside(theme_.list)));
    }

    BlockMargin operator()(const blocks::CodeBlock& code) {
        CodeBlockView(code).addTo(flow_, context_);
        return marginOf(theme_.codeBlock);
    }

    BlockMargin operator()(const blocks::HTMLBlock& html) {
        HTMLBlockView(html).addTo(flow_, context_);
        return marginOf(theme_.paragraph);
    }

    BlockMargin operator()(const blocks::Paragraph& paragraph) {
        const FlowContext inner = inside(theme_.paragraph);
        if (paragraph.text.size() == 1 && imageOfInline(paragraph.text.front()))
            flow_.addUnit(FlowUnit::Kind::image, flow_.inside(theme_.image, inner)).inlines = &paragraph.text;
        else if (isImageFlow(paragraph.text))
            flow_.addUnit(FlowUnit::Kind::imageFlow, inner).inlines = &paragraph.text;
        else
            InlineText(paragraph.text).addTo(flow_, theme_.paragraph, context_);
        return marginOf(theme_.paragraph);
    }

    BlockMargin operator()(const blocks::Heading& heading) {
        const int level = std::clamp(heading.level, 1, 6);
        const BlockStyle& style = theme_.headings.at(static_cast<std::size_t>(level) - 1);
        InlineText(heading.text, level).addTo(flow_, style, context_);
        return marginOf(style);
    }

    BlockMargin operator()(const blocks::Table& table) {
        TableView(table).addTo(flow_, inside(theme_.table));
        return marginOf(theme_.table);
    }

    BlockMargin operator()(const blocks::ThematicBreak& /*rule*/) {
        flow_.addUnit(FlowUnit::Kind::rule, inside(theme_.thematicBreak));
        return marginOf(theme_.thematicBreak);
    }

private:
    [[nodiscard]] FlowContext inside(const BlockStyle& style) { return flow_.inside(style, context_); }

    [[nodiscard]] BlockMargin marginOf(const BlockStyle& style) {
        return flow_.styled(style, context_).margin;
    }

    FlowBuilder& flow_;
    const Theme& theme_;
    const FlowContext& context_;
};

} // namespace

BlockMargin BlockSequence::addTo(FlowBuilder& flow, const FlowContext& context) const {
    BlockMargin all;
    BlockMargin before;
    for (std::size_t index = 0; index < count_; ++index) {
        const std::size_t first = flow.flow().units.size();
        const BlockMargin margin = content_(index);
        if (flow.flow().units.size() == first)
            flow.addUnit(FlowUnit::Kind::nothing, {});
        if (index > 0)
            flow.flow().units[first].gap += static_cast<float>(spaceBetween(before, margin, context.isTight));
        all = combined(all, margin);
        before = margin;
    }
    return all;
}

BlockMargin addBlocks(FlowBuilder& flow, const Blocks& values, const FlowContext& context) {
    BlockAdder adder(flow, context);
    return BlockSequence(values.size(),
                         [&](std::size_t index) { return std::visit(adder, values[index].value); })
        .addTo(flow, context);
}

} // namespace quillmoth::markdown
