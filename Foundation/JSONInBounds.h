#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillmoth {

/// `json`, a value of RFC 8259, in words that a parser with 64-bit numbers and bounded nesting can hold. What
/// it can hold keeps its meaning: an integer written with an exponent is written in digits, one of more than
/// 64 bits becomes a floating-point number. The rest becomes what reads as a value of the wrong type: a
/// number or a text beyond all bounds an array of an array, what is nested hundreds of levels deep null.
///
/// The parser refuses a whole text for one such value, though it stand under a key that nobody reads.
///
/// None where nothing had to change, and where what is left out is no JSON itself; the rest is not checked.
/// Takes time and memory in proportion to the text, and no more of the stack for deeper nesting.
[[nodiscard]] std::optional<std::string> jsonInBounds(std::string_view json);

} // namespace quillmoth
