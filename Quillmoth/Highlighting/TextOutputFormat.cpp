#include "Quillmoth/Highlighting/TextOutputFormat.h"

#include <algorithm>
#include <numeric>
#include <utility>

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
    using Color = std::optional<markdown::Color>;
    std::vector<std::pair<Color, markdown::SharedAttributes>> known; // one a colour
    const auto attributesOf = [&known](const Color& color) -> const markdown::SharedAttributes& {
        const auto found =
            std::ranges::find(known, color, &std::pair<Color, markdown::SharedAttributes>::first);
        if (found != known.end()) {
            return found->second;
        }
        markdown::AttributeContainer attributes;
        attributes.foregroundColor = color;
        return known.emplace_back(color, std::move(attributes)).second;
    };
    markdown::AttributedText result;
    const auto size = [](std::size_t sum, const StyledText& piece) { return sum + piece.text.size(); };
    result.reserve(std::accumulate(accumulatedText.begin(), accumulatedText.end(), std::size_t{0}, size),
                   accumulatedText.size());
    for (const StyledText& piece : accumulatedText) {
        result.append(piece.text, attributesOf(piece.foregroundColor));
    }
    return result;
}

} // namespace quillmoth::highlighting
