#pragma once

#include "MarkdownUI/Layout/TextEngine.h"
#include "MarkdownUI/Style/ColorScheme.h"

#include <string>

namespace quillmoth::markdown {

struct LayoutOptions {
    double width = 0;
    double fontSize = FontProperties::defaultSize; ///< of the document's root, in points
    ColorScheme colorScheme = ColorScheme::dark;
    TextAlignment alignment = TextAlignment::leading;
    std::string baseURL{};      ///< of links; empty for none
    std::string imageBaseURL{}; ///< of images; empty for `baseURL`

    bool operator==(const LayoutOptions&) const = default;
};

} // namespace quillmoth::markdown
