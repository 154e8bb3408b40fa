#pragma once

#include "Quillmoth/Highlighting/SwiftGrammar.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace quillmoth::highlighting {

/// Reads one line for the grammar, in one pass: a byte is looked at a bounded number of times.
class LineScanner {
public:
    LineScanner(std::string_view line, LineState& state, std::vector<Piece>& pieces);

    /// Once. Leaves in the state what is open at the end of the line.
    void scan();

private:
    using Context = LineState::Context;

    /// What a dot just before `position_` says of the next name.
    enum class Access : std::uint8_t { none, member, leadingDot };

    void scanCode();
    void scanString();
    void scanBlockComment();

    void takeWord();
    void takeNumber();
    void takeBackquote();
    void takeDots();
    void takeAttribute();
    void takeNumberSigns();
    void takeSlash();
    void takePunctuation();
    void takeOpeningParenthesis();
    void takeClosingParenthesis();

    void openString(std::size_t numberSigns);
    void takeEscape(std::size_t numberSigns);
    void takeQuotes(const Context& string);
    void push(Context context);
    void pop();
    void closeWhatEndsWithTheLine();

    [[nodiscard]] bool isInString() const;
    [[nodiscard]] bool isInBlockComment() const;
    [[nodiscard]] bool opensBlockComment();
    [[nodiscard]] bool isKeyword(std::string_view word, std::size_t end) const;
    [[nodiscard]] std::optional<TokenType> typeOfWord(std::string_view word, std::size_t end) const;
    [[nodiscard]] std::optional<TokenType> typeOfMember(std::string_view word, std::size_t end) const;
    [[nodiscard]] std::size_t endOfWord(std::size_t start) const;
    [[nodiscard]] std::size_t endOfBlanks(std::size_t start) const;
    [[nodiscard]] std::size_t endOfRun(std::size_t start, char byte, std::size_t most) const;
    [[nodiscard]] char at(std::size_t position) const;

    void take(std::size_t end, std::optional<TokenType> type);

    void takePlain(std::size_t end) { take(end, std::nullopt); }

    void addTextSinceStart(TokenType type);
    void add(std::size_t start, std::size_t end, Piece::Kind kind, TokenType type = {});

    std::string_view line_;
    LineState& state_;
    std::vector<Piece>& pieces_;
    std::size_t position_ = 0;
    std::size_t start_ = 0; ///< in a string or comment: where the text starts that has no piece yet
    std::size_t outermostSingleLineString_; ///< its index among the contexts, or npos
    std::optional<std::size_t>
        lastCommentEnd_; ///< where the line's last "*/" starts, or npos; once asked for
    char before_ = '\0'; ///< the last byte of code on this line that is not blank
    Access access_ = Access::none;
    bool namesFunction_ = false; ///< the word before was `func`
};

} // namespace quillmoth::highlighting
