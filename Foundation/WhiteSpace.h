#pragma once

#include <cstddef>
#include <string_view>

/// White space of Unicode, in well-formed UTF-8: spaces (general category Zs) and the characters that end a
/// line (U+000A to U+000D, U+0085, U+2028 and U+2029).
namespace quillmoth {

/// Length in bytes of the line end at the start of `text`, each character by itself; 0 where there is none.
[[nodiscard]] std::size_t newlineLength(std::string_view text);

/// `text` without the spaces and tabs, and with `newlines` also without the line ends, at its start.
[[nodiscard]] std::string_view withoutLeadingSpace(std::string_view text, bool newlines);

/// `text` without the spaces and tabs at its end.
[[nodiscard]] std::string_view withoutTrailingSpace(std::string_view text);

} // namespace quillmoth
