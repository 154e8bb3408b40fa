#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Offsets into UTF-8 text, as different toolkits count them. Well-formed text is taken for granted; an
/// offset beyond the end counts as the end.
namespace quillmoth::platform {

enum class OffsetUnit { codePoint, utf16 };

/// A stretch of text from `start` up to `end`, in an application's own units.
struct TextRange {
    std::int64_t start = 0;
    std::int64_t end = 0;

    [[nodiscard]] bool empty() const { return end <= start; }

    friend bool operator==(const TextRange&, const TextRange&) = default;
};

/// No more of a selected stretch than limits::kSelection and one unit, so that the cut is noticed: what an
/// application reports may be any length.
[[nodiscard]] TextRange withinSelectionLimit(TextRange range);

/// The length of `text` in `unit`.
[[nodiscard]] std::int64_t lengthIn(OffsetUnit unit, std::string_view text);

/// The unit in which an application that shows `text` counts `characterCount`; none where both or neither
/// fit.
[[nodiscard]] std::optional<OffsetUnit> unitOfCount(std::string_view text, std::int64_t characterCount);

/// The place in bytes of `offset`. An offset within a surrogate pair counts as the start of the pair.
[[nodiscard]] std::size_t byteOffset(std::string_view text, std::int64_t offset, OffsetUnit unit);

[[nodiscard]] std::int64_t convertedOffset(std::string_view text, std::int64_t offset, OffsetUnit from,
                                           OffsetUnit to);

/// `text` without each U+FEFF that follows a character outside of the basic plane: Gecko fills up with them
/// so that its code points number as many as its UTF-16 units.
[[nodiscard]] std::string withoutFillers(std::string_view text);

/// Some releases of Chromium take a selection's offsets in code points for UTF-16 units and convert them once
/// more. The range in code points that was meant, as the caret shows, which is always at one of its ends;
/// none where that cannot be told for certain.
[[nodiscard]] std::optional<TextRange> repairedRange(std::string_view text, TextRange reported,
                                                     std::int64_t caret);

/// `text` with every line break turned into a space; "\r\n" gives one.
[[nodiscard]] std::string flattenedLines(std::string_view text);

} // namespace quillmoth::platform
