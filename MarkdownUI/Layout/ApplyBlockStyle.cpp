#include "MarkdownUI/Layout/ApplyBlockStyle.h"

namespace quillmoth::markdown {

const StyledBlock& ApplyBlockStyle::operator()(const BlockStyle& style, std::uint32_t bag) {
    const auto known = styled_.find({&style, bag});
    if (known != styled_.end())
        return known->second;
    StyledBlock block{style({BlockView(bags_[bag])}), bag};
    if (block.view.attributes != bags_[bag]) {
        block.bag = static_cast<std::uint32_t>(bags_.size());
        bags_.push_back(block.view.attributes);
    }
    return styled_.emplace(std::pair{&style, bag}, std::move(block)).first->second;
}

} // namespace quillmoth::markdown
