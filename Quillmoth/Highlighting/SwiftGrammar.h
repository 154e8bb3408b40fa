#pragma once

#include "Quillmoth/Highlighting/TokenType.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace quillmoth::highlighting {

/// A stretch of one line. Offsets are small: a hostile line has a piece for every byte or two.
struct Piece {
    enum class Kind : std::uint8_t { token, plainText, whitespace };

    std::uint32_t start = 0; ///< bytes from the start of the line, which is shorter than 4 GiB
    std::uint32_t length = 0;
    Kind kind = Kind::plainText;
    TokenType type = TokenType::keyword; ///< read for `token` only

    bool operator==(const Piece&) const = default;
};

/// What is still open at the end of a line. Two equal states colour the same next line in the same way.
struct LineState {
    struct Context {
        enum class Kind : std::uint8_t { blockComment, multiLineString, singleLineString, interpolation };

        Kind kind = Kind::blockComment;
        /// Comment: depth; string: number signs before the quote; else open parentheses.
        std::uint32_t count = 0;

        bool operator==(const Context&) const = default;
    };

    std::vector<Context> contexts; ///< outermost first

    bool operator==(const LineState&) const = default;
};

/// The grammar of the Swift language, as a line engine: `state = step(line, state, pieces)`. Any text may go
/// through it. Time is linear in the length of the line, whatever the line holds.
class SwiftGrammar {
public:
    /// Appends the pieces of `line` (no line feed in it), which cover it without gap, to `pieces`; gives the
    /// state that the next line starts in.
    [[nodiscard]] LineState step(std::string_view line, LineState state, std::vector<Piece>& pieces) const;
};

} // namespace quillmoth::highlighting
