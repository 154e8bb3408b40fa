#pragma once

#include "MarkdownUI/Style/Color.h"
#include "Quillmoth/Highlighting/TokenType.h"

#include <map>

namespace quillmoth::highlighting {

/// The font that a theme was made for. What the reader sees is set in the font of the code block.
struct Font {
    double size = 0; ///< points

    explicit Font(double pointSize) : size(pointSize) {}

    bool operator==(const Font&) const = default;
};

/// The colours of code.
struct Theme {
    Font font;
    markdown::Color plainTextColor;
    std::map<TokenType, markdown::Color> tokenColors; ///< a type without colour shows as plain text

    /// Light colours for a night-coloured ground; used in light and dark surroundings alike.
    [[nodiscard]] static Theme midnight(Font withFont);

    bool operator==(const Theme&) const = default;
};

} // namespace quillmoth::highlighting
