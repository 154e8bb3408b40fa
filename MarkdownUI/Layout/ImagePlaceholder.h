#pragma once

#include "MarkdownUI/Style/Geometry.h"

#include <algorithm>

/// The sizes, in pixels, of what stands for an image that is not loaded.
namespace quillmoth::markdown {

constexpr Size kPlaceholderInBlock{420, 52};
constexpr Size kPlaceholderInText{280, 24};

/// Narrower where there is less room, and as high all the same.
[[nodiscard]] inline Size placeholderWithin(const Size& size, double width) {
    return {std::min(size.width, width), size.height};
}

} // namespace quillmoth::markdown
