#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth {

/// One piece of a split preset.
struct ExtractedText {
    /// Position among the pieces, from 0.
    std::int64_t id = 0;
    /// A blank holds its brackets at first.
    std::string text;
    /// True for a blank, false for fixed text.
    bool isBracketed = false;

    friend bool operator==(const ExtractedText&, const ExtractedText&) = default;
};

/// Splits `prompt`, over its user-perceived characters, at "[" and behind "]". Every "]" ends a blank, with
/// or without a "[" before it; a "[" without an end stays fixed text. Joining the pieces gives `prompt` back.
[[nodiscard]] std::vector<ExtractedText> extractBracketedTexts(std::string_view prompt);

} // namespace quillmoth
