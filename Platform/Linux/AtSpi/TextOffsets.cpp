#include "Platform/Linux/AtSpi/TextOffsets.h"

#include "Foundation/Limits.h"

#include <algorithm>
#include <array>

namespace quillmoth::platform {

namespace {

constexpr std::string_view kFiller = "\xEF\xBB\xBF";

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// True for the first byte of a character outside of the basic plane.
bool isWideStart(char byte) {
    return static_cast<unsigned char>(byte) >= 0xF0U;
}

std::int64_t unitsOf(char firstByte, OffsetUnit unit) {
    return unit == OffsetUnit::utf16 && isWideStart(firstByte) ? 2 : 1;
}

std::size_t nextCharacter(std::string_view text, std::size_t offset) {
    ++offset;
    while (offset < text.size() && isContinuation(text[offset]))
        ++offset;
    return offset;
}

} // namespace

TextRange withinSelectionLimit(TextRange range) {
    constexpr auto kMost = static_cast<std::int64_t>(limits::kSelection) + 1;
    return {.start = range.start, .end = std::min(range.end, range.start + kMost)};
}

std::int64_t lengthIn(OffsetUnit unit, std::string_view text) {
    std::int64_t length = 0;
    for (const char byte : text) {
        if (!isContinuation(byte))
            length += unitsOf(byte, unit);
    }
    return length;
}

std::optional<OffsetUnit> unitOfCount(std::string_view text, std::int64_t characterCount) {
    const std::int64_t codePoints = lengthIn(OffsetUnit::codePoint, text);
    const std::int64_t units = lengthIn(OffsetUnit::utf16, text);
    if (codePoints == units)
        return std::nullopt;
    if (characterCount == codePoints)
        return OffsetUnit::codePoint;
    return characterCount == units ? std::optional(OffsetUnit::utf16) : std::nullopt;
}

std::size_t byteOffset(std::string_view text, std::int64_t offset, OffsetUnit unit) {
    std::size_t place = 0;
    std::int64_t passed = 0;
    while (place < text.size()) {
        passed += unitsOf(text[place], unit);
        if (passed > offset)
            break;
        place = nextCharacter(text, place);
    }
    return place;
}

std::int64_t convertedOffset(std::string_view text, std::int64_t offset, OffsetUnit from, OffsetUnit to) {
    if (from == to)
        return std::clamp<std::int64_t>(offset, 0, lengthIn(from, text));
    return lengthIn(to, text.substr(0, byteOffset(text, offset, from)));
}

std::string withoutFillers(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    bool isBehindWide = false;
    for (std::size_t place = 0; place < text.size();) {
        const std::size_t end = nextCharacter(text, place);
        const std::string_view character = text.substr(place, end - place);
        if (!isBehindWide || character != kFiller)
            result.append(character);
        isBehindWide = isWideStart(text[place]);
        place = end;
    }
    return result;
}

std::optional<TextRange> repairedRange(std::string_view text, TextRange reported, std::int64_t caret) {
    if (std::none_of(text.begin(), text.end(), isWideStart))
        return reported;
    const std::int64_t length = lengthIn(OffsetUnit::codePoint, text);
    const auto meant = [text, length](std::int64_t offset) -> std::optional<std::int64_t> {
        // The text may have become shorter since it was read.
        if (offset > length)
            return std::nullopt;
        // Behind a wide character two offsets would be reported alike.
        const std::size_t place = byteOffset(text, offset, OffsetUnit::codePoint);
        const bool isAmbiguous =
            offset > 0 && isWideStart(text[byteOffset(text, offset - 1, OffsetUnit::codePoint)]);
        return isAmbiguous ? std::nullopt : std::optional(lengthIn(OffsetUnit::utf16, text.substr(0, place)));
    };
    const auto meetsCaret = [caret](TextRange range) { return range.start == caret || range.end == caret; };
    const auto start = meant(reported.start);
    const auto end = meant(reported.end);
    if (!start || !end)
        return std::nullopt;
    const TextRange repaired{.start = *start, .end = *end};
    if (repaired == reported)
        return reported;
    if (meetsCaret(repaired) == meetsCaret(reported))
        return std::nullopt;
    return meetsCaret(repaired) ? repaired : reported;
}

std::string flattenedLines(std::string_view text) {
    constexpr std::array<std::string_view, 6> kBreaks = {"\r\n",     "\n",           "\r",
                                                         "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"};
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const auto* found = std::find_if(kBreaks.begin(), kBreaks.end(),
                                         [text](std::string_view each) { return text.starts_with(each); });
        if (found == kBreaks.end()) {
            result.push_back(text.front());
            text.remove_prefix(1);
        } else {
            result.push_back(' ');
            text.remove_prefix(found->size());
        }
    }
    return result;
}

} // namespace quillmoth::platform
