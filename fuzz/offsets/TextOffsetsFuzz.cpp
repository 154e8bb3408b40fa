// A text, and behind a byte 0xFF three bytes: a selection in it, as programs report theirs, and the caret.

#include "Fuzz.h"

#include "Foundation/Text.h"
#include "Platform/Linux/AtSpi/TextOffsets.h"

#include <algorithm>

namespace quillmoth::fuzz {

namespace {

using namespace platform;

constexpr char kSeparator = '\xFF';
constexpr std::string_view kFiller = "\uFEFF";

std::int64_t converted(std::string_view text, std::int64_t offset, OffsetUnit from) {
    const auto to = from == OffsetUnit::utf16 ? OffsetUnit::codePoint : OffsetUnit::utf16;
    return convertedOffset(text, offset, from, to);
}

void checkOffsets(std::string_view text) {
    const std::int64_t points = lengthIn(OffsetUnit::codePoint, text);
    const std::int64_t units = lengthIn(OffsetUnit::utf16, text);
    promise(units == static_cast<std::int64_t>(utf16Length(text)), "as long as the text is in UTF-16");
    std::size_t formerPlace = 0;
    for (std::int64_t point = 0; point <= points; ++point) {
        const std::size_t place = byteOffset(text, point, OffsetUnit::codePoint);
        promise(point == 0 ? place == 0 : place > formerPlace, "each character is behind the former one");
        promise(isValidUTF8(text.substr(0, place)), "offsets are between characters");
        promise(lengthIn(OffsetUnit::codePoint, text.substr(0, place)) == point, "a place has its offset");
        const std::int64_t unit = converted(text, point, OffsetUnit::codePoint);
        promise(byteOffset(text, unit, OffsetUnit::utf16) == place, "the same place in both units");
        promise(converted(text, unit, OffsetUnit::utf16) == point, "there and back again");
        formerPlace = place;
    }
    promise(formerPlace == text.size(), "the last offset is the end");
    promise(byteOffset(text, units + 1, OffsetUnit::utf16) == text.size(), "beyond the end is the end");
    promise(byteOffset(text, -1, OffsetUnit::utf16) == 0, "before the start is the start");
    const auto unit = unitOfCount(text, points);
    promise(unit == (points == units ? std::nullopt : std::optional(OffsetUnit::codePoint)),
            "a count that fits one unit tells it");
}

void checkFillers(std::string_view text) {
    std::string filled;
    for (std::size_t place = 0; place < text.size();) {
        std::size_t end = place + 1;
        while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U)
            ++end;
        filled += text.substr(place, end - place);
        if (end - place == 4)
            filled += kFiller;
        place = end;
    }
    promise(lengthIn(OffsetUnit::codePoint, filled) == lengthIn(OffsetUnit::utf16, text),
            "fillers make up for the wide characters");
    promise(withoutFillers(filled) == text, "fillers are taken out, and nothing else");
}

/// What becomes of an offset in code points that is taken for one in UTF-16 units and converted; within a
/// surrogate pair it becomes the offset behind it.
std::int64_t convertedTwice(std::string_view text, std::int64_t offset) {
    const std::int64_t point = converted(text, offset, OffsetUnit::utf16);
    return converted(text, point, OffsetUnit::codePoint) < offset ? point + 1 : point;
}

void checkRange(std::string_view text, TextRange meant, std::int64_t caret) {
    // Anything may be reported, also what lies outside.
    (void)repairedRange(text, meant, caret);
    const std::int64_t points = lengthIn(OffsetUnit::codePoint, text);
    const auto within = [points](std::int64_t offset) { return std::clamp<std::int64_t>(offset, 0, points); };
    meant = {within(meant.start), within(meant.end)};
    if (meant.empty())
        return;
    const TextRange twice{convertedTwice(text, meant.start), convertedTwice(text, meant.end)};
    for (const std::int64_t end : {meant.start, meant.end}) {
        const auto plain = repairedRange(text, meant, end);
        promise(!plain || *plain == meant, "a range that is right stays");
        const auto repaired = repairedRange(text, twice, end);
        promise(!repaired || *repaired == meant, "a range converted twice is repaired");
    }
}

void checkLines(std::string_view text) {
    const std::string flat = flattenedLines(text);
    promise(isValidUTF8(flat) && flat.size() <= text.size(), "flattened text is text");
    for (const std::string_view lineBreak : {"\n", "\r", "\u0085", "\u2028", "\u2029"})
        promise(flat.find(lineBreak) == std::string::npos, "no line break is left");
    std::string expected = replacingAll(text, "\r\n", "\n");
    for (const std::string_view lineBreak : {"\n", "\r", "\u0085", "\u2028", "\u2029"})
        expected = replacingAll(expected, lineBreak, " ");
    promise(flat == expected, "each line break is one space");
}

} // namespace

void check(std::string_view input) {
    const std::size_t end = std::min(input.find(kSeparator), input.size());
    const std::string text = sanitizedUTF8(input.substr(0, end));
    input.remove_prefix(end);
    checkOffsets(text);
    checkFillers(text);
    checkLines(text);
    if (input.size() < 4)
        return;
    // From before the start to beyond the end of most texts.
    const auto number = [&](std::size_t index) { return static_cast<std::int64_t>(input[index]); };
    checkRange(text, {number(1), number(2)}, number(3));
}

} // namespace quillmoth::fuzz
