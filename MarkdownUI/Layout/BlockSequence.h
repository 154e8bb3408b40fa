#pragma once

#include "MarkdownUI/Layout/FlowBuilder.h"

#include <cstddef>
#include <functional>

namespace quillmoth::markdown {

/// Elements below each other, numbered from 0. Above each but the first stands the larger of its own margin
/// and that below the element before.
class BlockSequence {
public:
    /// Adds the element of that number to a flow, and gives its margin.
    using Content = std::function<BlockMargin(std::size_t index)>;

    BlockSequence(std::size_t count, Content content) : count_(count), content_(std::move(content)) {}

    /// Adds the elements, and gives the margin of them all.
    BlockMargin addTo(FlowBuilder& flow, const FlowContext& context) const;

private:
    std::size_t count_;
    Content content_;
};

/// Adds blocks as a sequence.
BlockMargin addBlocks(FlowBuilder& flow, const Blocks& values, const FlowContext& context);

} // namespace quillmoth::markdown
