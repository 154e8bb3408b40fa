#pragma once

#include <cstddef>
#include <string_view>

namespace quillmoth {

/// Length in bytes of the character of general category Zs at the start of `text` (well-formed UTF-8); 0
/// where there is none.
[[nodiscard]] constexpr std::size_t spaceLength(std::string_view text) {
    if (text.empty())
        return 0;
    if (text[0] == ' ')
        return 1;
    if (text.starts_with("\u00A0"))
        return 2;
    const bool general =
        text.size() >= 3 && text.starts_with("\xE2\x80") && static_cast<unsigned char>(text[2]) <= 0x8A;
    const bool other = text.starts_with("\u1680") || text.starts_with("\u202F") ||
                       text.starts_with("\u205F") || text.starts_with("\u3000");
    return general || other ? 3 : 0;
}

/// The same for the characters that end a line: U+000A to U+000D, U+0085, U+2028 and U+2029.
[[nodiscard]] constexpr std::size_t newlineLength(std::string_view text) {
    if (text.empty())
        return 0;
    if (text[0] >= '\n' && text[0] <= '\r')
        return 1;
    if (text.starts_with("\u0085"))
        return 2;
    return text.starts_with("\u2028") || text.starts_with("\u2029") ? 3 : 0;
}

/// `text` without the spaces and tabs, and with `newlines` also without the line ends, at its start.
[[nodiscard]] constexpr std::string_view withoutLeadingSpace(std::string_view text, bool newlines) {
    for (;;) {
        std::size_t length = text.starts_with('\t') ? 1 : spaceLength(text);
        if (length == 0 && newlines)
            length = newlineLength(text);
        if (length == 0)
            return text;
        text.remove_prefix(length);
    }
}

/// `text` without the spaces and tabs at its end.
[[nodiscard]] constexpr std::string_view withoutTrailingSpace(std::string_view text) {
    for (std::size_t length = 1; length <= 3 && length <= text.size();) {
        const std::string_view last = text.substr(text.size() - length);
        if (last == "\t" || spaceLength(last) == length) {
            text.remove_suffix(length);
            length = 1;
        } else {
            ++length;
        }
    }
    return text;
}

} // namespace quillmoth
