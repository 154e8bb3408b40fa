#include "Foundation/WhiteSpace.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>

namespace quillmoth {

namespace {

bool isSpaceOrTab(UChar32 character) {
    return character == '\t' || u_charType(character) == U_SPACE_SEPARATOR;
}

bool isNewline(UChar32 character) {
    return u_isUWhiteSpace(character) != 0 && !isSpaceOrTab(character);
}

struct Character {
    UChar32 value = 0;
    std::size_t length = 0;
};

Character firstOf(std::string_view text) {
    const auto size = static_cast<std::int32_t>(std::min<std::size_t>(text.size(), U8_MAX_LENGTH));
    std::int32_t length = 0;
    Character first;
    if (size > 0)
        U8_NEXT(text.data(), length, size, first.value);
    first.length = static_cast<std::size_t>(length);
    return first;
}

Character lastOf(std::string_view text) {
    text = text.substr(text.size() - std::min<std::size_t>(text.size(), U8_MAX_LENGTH));
    const auto size = static_cast<std::int32_t>(text.size());
    std::int32_t start = size;
    Character last;
    if (size > 0)
        U8_PREV(text.data(), 0, start, last.value);
    last.length = static_cast<std::size_t>(size - start);
    return last;
}

} // namespace

std::size_t newlineLength(std::string_view text) {
    const Character first = firstOf(text);
    return isNewline(first.value) ? first.length : 0;
}

std::string_view withoutLeadingSpace(std::string_view text, bool newlines) {
    for (Character first = firstOf(text); isSpaceOrTab(first.value) || (newlines && isNewline(first.value));
         first = firstOf(text))
        text.remove_prefix(first.length);
    return text;
}

std::string_view withoutTrailingSpace(std::string_view text) {
    for (Character last = lastOf(text); isSpaceOrTab(last.value); last = lastOf(text))
        text.remove_suffix(last.length);
    return text;
}

} // namespace quillmoth
