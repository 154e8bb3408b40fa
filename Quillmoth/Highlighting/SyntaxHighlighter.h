#pragma once

#include "Quillmoth/Highlighting/OutputFormat.h"
#include "Quillmoth/Highlighting/SwiftGrammar.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace quillmoth::highlighting {

/// Splits a text by a grammar and drives a builder of the format with the pieces. Holds no state between
/// calls.
template<OutputFormat Format, class Grammar = SwiftGrammar>
class SyntaxHighlighter {
public:
    SyntaxHighlighter(Format format, Grammar grammar)
        : format_(std::move(format)), grammar_(std::move(grammar)) {}

    [[nodiscard]] auto highlight(std::string_view text) const {
        auto builder = format_.makeBuilder();
        LineState state;
        std::vector<Piece> pieces;
        std::string_view blank; // white space runs over the ends of lines, so it waits for what follows
        for (std::size_t start = 0; start <= text.size();) {
            const std::size_t end = std::min(text.find('\n', start), text.size());
            const std::string_view line = text.substr(start, end - start);
            pieces.clear();
            state = grammar_.step(line, std::move(state), pieces);
            for (const Piece& piece : pieces) {
                add(builder, blank, line.substr(piece.start, piece.length), piece);
            }
            if (end < text.size()) {
                extend(blank, text.substr(end, 1));
            }
            start = end + 1;
        }
        flush(builder, blank);
        return builder.build();
    }

private:
    template<class Builder>
    static void add(Builder& builder, std::string_view& blank, std::string_view text, const Piece& piece) {
        if (piece.kind == Piece::Kind::whitespace) {
            extend(blank, text);
            return;
        }
        flush(builder, blank);
        if (piece.kind == Piece::Kind::token) {
            builder.addToken(text, piece.type);
        } else {
            builder.addPlainText(text);
        }
    }

    /// `blank` and `text` stand side by side in the same text.
    static void extend(std::string_view& blank, std::string_view text) {
        blank = blank.empty() ? text : std::string_view(blank.data(), blank.size() + text.size());
    }

    template<class Builder>
    static void flush(Builder& builder, std::string_view& blank) {
        if (!blank.empty()) {
            builder.addWhitespace(std::exchange(blank, {}));
        }
    }

    Format format_;
    Grammar grammar_;
};

} // namespace quillmoth::highlighting
