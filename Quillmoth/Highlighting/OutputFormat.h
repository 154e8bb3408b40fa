#pragma once

#include "Quillmoth/Highlighting/TokenType.h"

#include <concepts>
#include <string_view>

namespace quillmoth::highlighting {

/// Receives the pieces of one text in text order, then `build` once. The pieces joined are the text, byte for
/// byte; none is empty, and the views are valid during the call only.
template<class Builder>
concept OutputBuilder = requires(Builder builder, std::string_view piece, TokenType type) {
    builder.addToken(piece, type);
    builder.addPlainText(piece);
    builder.addWhitespace(piece);
    builder.build();
};

/// Makes a fresh builder for each text.
template<class Format>
concept OutputFormat = requires(const Format& format) {
    { format.makeBuilder() } -> OutputBuilder;
};

} // namespace quillmoth::highlighting
