#pragma once

#include "MarkdownUI/Document/Block.h"
#include "MarkdownUI/Style/ColorScheme.h"

namespace quillmoth::markdown {

/// `values` without the images that the fragment of their URL reserves for the other scheme
/// ("gh-dark-mode-only", "gh-light-mode-only"). A paragraph that loses all stays.
[[nodiscard]] Blocks removeSchemeImages(Blocks values, ColorScheme scheme);

/// True if removeSchemeImages would remove something under some scheme.
[[nodiscard]] bool hasSchemeImages(const Blocks& values);

} // namespace quillmoth::markdown
