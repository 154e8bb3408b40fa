#include "MarkdownUI/Style/Color.h"

#include "MarkdownUI/Document/Hash.h"

#include <array>
#include <cstdio>

namespace quillmoth::markdown {

const char* nameOf(SemanticColor color) {
    constexpr std::array kNames{"text",     "secondary",  "gray",        "link", "accent", "divider",
                                "codeFill", "buttonFill", "buttonLabel", "done", "clear"};
    return kNames.at(static_cast<std::size_t>(color));
}

bool Color::operator==(const Color& other) const {
    return value_ == other.value_;
}

std::string describe(const Color& color) {
    if (const SemanticColor* name = color.semantic())
        return nameOf(*name);
    const RGBColor& value = *color.rgb();
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "#%02X%02X%02X", value.red, value.green, value.blue);
    return text.data();
}

std::size_t hashValue(const Color& color) {
    if (const SemanticColor* name = color.semantic())
        return hashOf(0, static_cast<int>(*name));
    const RGBColor& value = *color.rgb();
    return hashOf(1, value.red, value.green, value.blue);
}

} // namespace quillmoth::markdown
