#include "Quillmoth/Prompts/ExtractedText.h"

#include "Foundation/Text.h"

namespace quillmoth {

std::vector<ExtractedText> extractBracketedTexts(std::string_view prompt) {
    std::vector<ExtractedText> pieces;
    std::string current;
    const auto addPiece = [&](bool isBracketed) {
        const auto id = static_cast<std::int64_t>(pieces.size());
        pieces.push_back({.id = id, .text = current, .isBracketed = isBracketed});
        current.clear();
    };
    for (const std::string_view character : characters(prompt)) {
        if (character == "[" && !current.empty())
            addPiece(false);
        current += character;
        if (character == "]")
            addPiece(true);
    }
    if (!current.empty())
        addPiece(false);
    return pieces;
}

} // namespace quillmoth
