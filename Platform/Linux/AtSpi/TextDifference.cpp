#include "Platform/Linux/AtSpi/TextDifference.h"

#include <algorithm>

namespace quillmoth::platform {

namespace {

/// True where a character of `text` begins or `text` ends at `offset`.
bool isBoundary(std::string_view text, std::size_t offset) {
    return offset >= text.size() || (static_cast<unsigned char>(text[offset]) & 0xC0U) != 0x80U;
}

std::size_t commonSuffix(std::string_view first, std::string_view second) {
    const auto ends = std::mismatch(first.rbegin(), first.rend(), second.rbegin(), second.rend());
    auto length = static_cast<std::size_t>(ends.first - first.rbegin());
    while (length > 0 && !isBoundary(first, first.size() - length))
        --length;
    return length;
}

std::size_t commonPrefix(std::string_view first, std::string_view second) {
    const auto ends = std::mismatch(first.begin(), first.end(), second.begin(), second.end());
    auto length = static_cast<std::size_t>(ends.first - first.begin());
    // Where one text ends within the common stretch, it is the other one that may be cut in a character.
    while (length > 0 && !(isBoundary(first, length) && isBoundary(second, length)))
        --length;
    return length;
}

} // namespace

TextDifference differenceBetween(std::string_view oldText, std::string_view newText) {
    // The longest common end is taken off first, so of several places the first one is reported.
    const std::size_t suffix = commonSuffix(oldText, newText);
    oldText.remove_suffix(suffix);
    newText.remove_suffix(suffix);
    const std::size_t prefix = commonPrefix(oldText, newText);
    return {.location = prefix, .oldLength = oldText.size() - prefix, .newLength = newText.size() - prefix};
}

} // namespace quillmoth::platform
