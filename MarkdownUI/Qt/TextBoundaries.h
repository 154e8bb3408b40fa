#pragma once

#include <cstddef>
#include <string_view>
#include <utility>

namespace quillmoth::markdown {

/// Borders in UTF-8 text, as byte offsets. Only the surroundings of the offset are looked at, so a call costs
/// the same in a text of any length.

/// The word (or the run of blanks, or the other character) around `offset`.
[[nodiscard]] std::pair<std::size_t, std::size_t> wordAround(std::string_view text, std::size_t offset);

/// The stretch between two line feeds around `offset`, both excluded.
[[nodiscard]] std::pair<std::size_t, std::size_t> lineAround(std::string_view text, std::size_t offset);

/// The next border of a user-perceived character.
[[nodiscard]] std::size_t nextCharacter(std::string_view text, std::size_t offset);
[[nodiscard]] std::size_t previousCharacter(std::string_view text, std::size_t offset);

/// The end of this or the next word; the start of this or the word before.
[[nodiscard]] std::size_t nextWord(std::string_view text, std::size_t offset);
[[nodiscard]] std::size_t previousWord(std::string_view text, std::size_t offset);

} // namespace quillmoth::markdown
