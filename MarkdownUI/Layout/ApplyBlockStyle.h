#pragma once

#include "MarkdownUI/Style/BlockStyle.h"

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

namespace quillmoth::markdown {

/// A block in its style.
struct StyledBlock {
    BlockView view;
    std::uint32_t bag = 0; ///< index of its attributes
};

/// Applies styles to blocks. Blocks of one style in the same attributes are alike, so each is styled once.
class ApplyBlockStyle {
public:
    /// Attributes are named by their index in `bags`, which grows as styles make new ones.
    explicit ApplyBlockStyle(std::vector<AttributeContainer>& bags) : bags_(bags) {}

    /// A block among the attributes `bag`. The style stays where it is as long as this lives.
    const StyledBlock& operator()(const BlockStyle& style, std::uint32_t bag);

private:
    std::vector<AttributeContainer>& bags_;
    std::map<std::pair<const BlockStyle*, std::uint32_t>, StyledBlock> styled_;
};

} // namespace quillmoth::markdown
