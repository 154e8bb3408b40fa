#include "MarkdownUI/Layout/TextDirection.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <variant>

namespace quillmoth::markdown {

std::optional<TextDirection> firstStrongDirection(std::string_view text) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    for (std::size_t offset = 0; offset < text.size();) {
        UChar32 codePoint = 0;
        U8_NEXT(bytes, offset, text.size(), codePoint);
        if (codePoint < 0)
            continue;
        switch (u_charDirection(codePoint)) {
        case U_LEFT_TO_RIGHT:
            return TextDirection::leftToRight;
        case U_RIGHT_TO_LEFT:
        case U_RIGHT_TO_LEFT_ARABIC:
            return TextDirection::rightToLeft;
        default:
            break;
        }
    }
    return std::nullopt;
}

std::optional<TextDirection> firstStrongDirection(const Inlines& values) {
    for (const Inline& value : values) {
        std::optional<TextDirection> found;
        const Inlines* children = childrenOf(value);
        if (const auto* text = value.get<inlines::Text>())
            found = firstStrongDirection(text->literal);
        else if (const auto* code = value.get<inlines::Code>())
            found = firstStrongDirection(code->literal);
        else if (children != nullptr && value.get<inlines::Image>() == nullptr)
            found = firstStrongDirection(*children);
        if (found)
            return found;
    }
    return std::nullopt;
}

} // namespace quillmoth::markdown
