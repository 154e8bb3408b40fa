#include "Quillmoth/Highlighting/TextOutputFormat.h"

namespace quillmoth::highlighting {

void TextOutputFormat::Builder::addToken(std::string_view token, TokenType type) {
    const auto color = theme.tokenColors.find(type);
    accumulatedText.push_back(
        {token, color != theme.tokenColors.end() ? color->second : theme.plainTextColor});
}

void TextOutputFormat::Builder::addPlainText(std::string_view text) {
    accumulatedText.push_back({text, theme.plainTextColor});
}

void TextOutputFormat::Builder::addWhitespace(std::string_view whitespace) {
    accumulatedText.push_back({whitespace, std::nullopt});
}

markdown::AttributedText TextOutputFormat::Builder::build() const {
    markdown::AttributedText result;
    markdown::AttributeContainer attributes;
    for (const StyledText& piece : accumulatedText) {
        attributes.foregroundColor = piece.foregroundColor;
        result.append(piece.text, attributes);
    }
    return result;
}

} // namespace quillmoth::highlighting
