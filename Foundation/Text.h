#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Operations on UTF-8 text. Ill-formed input is read with each bad sequence as U+FFFD; none of them fails.
namespace quillmoth {

/// True for well-formed UTF-8 (Unicode 15, table 3-7: no surrogates, no overlong forms).
[[nodiscard]] bool isValidUTF8(std::string_view text);

/// `text` with every ill-formed sequence replaced by U+FFFD.
[[nodiscard]] std::string sanitizedUTF8(std::string_view text);

/// The user-perceived characters of `text` (extended grapheme clusters, UAX #29), in order; views into
/// `text`.
[[nodiscard]] std::vector<std::string_view> characters(std::string_view text);

/// The first `size` bytes of `text`, without a code point that would be cut. A view into `text`.
[[nodiscard]] std::string_view prefixOfBytes(std::string_view text, std::size_t size);

/// The first user-perceived character; empty for empty text. A view into `text`.
[[nodiscard]] std::string_view firstCharacter(std::string_view text);

/// Full Unicode upper-casing in the root locale (so "ß" becomes "SS").
[[nodiscard]] std::string uppercased(std::string_view text);

/// True when both are canonically equivalent (UAX #15).
[[nodiscard]] bool canonicallyEqual(std::string_view first, std::string_view second);

/// `text` without the blanks, tabs and line ends (CR, LF) at both ends. A view into `text`.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// Length in UTF-16 code units.
[[nodiscard]] std::size_t utf16Length(std::string_view text);

/// `text` with the UTF-16 units [location, location + length) replaced by `replacement`. A range that reaches
/// beyond the end is cut to it; one that splits a surrogate pair is widened to the whole pair.
[[nodiscard]] std::string replacingUTF16Range(std::string_view text, std::size_t location, std::size_t length,
                                              std::string_view replacement);

/// `text` with every occurrence of `search` (exact bytes; not empty) replaced.
[[nodiscard]] std::string replacingAll(std::string_view text, std::string_view search,
                                       std::string_view replacement);

} // namespace quillmoth
