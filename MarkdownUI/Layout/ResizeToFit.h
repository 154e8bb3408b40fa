#pragma once

#include "MarkdownUI/Style/Geometry.h"

#include <algorithm>

namespace quillmoth::markdown {

/// An image of that size, made narrower where there is less room, never wider.
struct ResizeToFit {
    Size naturalSize;

    [[nodiscard]] Size within(double width) const {
        const double scale = std::min(1.0, width / std::max(naturalSize.width, 1.0));
        return {naturalSize.width * scale, naturalSize.height * scale};
    }
};

} // namespace quillmoth::markdown
