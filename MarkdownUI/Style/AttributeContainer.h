#pragma once

#include "MarkdownUI/Style/Color.h"
#include "MarkdownUI/Style/FontProperties.h"
#include "MarkdownUI/Style/Geometry.h"

#include <cstdint>
#include <optional>
#include <string>

namespace quillmoth::markdown {

enum class LineStyle : std::uint8_t { single, thick, doubled, dotted };

/// An image that stands in the text as the one character U+FFFC.
struct ImageAttachment {
    std::string source; ///< absolute URL
    std::string alt;
    Size size;

    bool operator==(const ImageAttachment&) const = default;
};

/// The attributes of one run of text. Text styles edit `fontProperties`; realizeFonts makes a `font` of them.
struct AttributeContainer {
    std::optional<FontProperties> fontProperties;
    std::optional<Color> foregroundColor;
    std::optional<Color> backgroundColor;
    std::optional<LineStyle> strikethroughStyle;
    std::optional<LineStyle> underlineStyle;
    std::optional<double> kern;
    std::optional<double> tracking;
    std::optional<std::string> link; ///< URL
    std::optional<Font> font;
    std::optional<ImageAttachment> attachment;

    bool operator==(const AttributeContainer&) const = default;
};

} // namespace quillmoth::markdown
