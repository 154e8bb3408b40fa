#include "Quillmoth/Highlighting/SplashCodeSyntaxHighlighter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <string>

namespace quillmoth::highlighting {

namespace {

using markdown::Color;

Theme midnight() {
    return Theme::midnight(Font(16));
}

std::optional<Color> colorAt(const markdown::AttributedText& text, std::string_view piece) {
    const auto* run = text.runAt(text.text().find(piece));
    return run != nullptr ? run->attributes->foregroundColor : std::nullopt;
}

} // namespace

TEST(SplashCodeSyntaxHighlighter, ColoursTokensAndPlainTextButNotWhitespace) {
    Theme theme = midnight();
    const auto text = SplashCodeSyntaxHighlighter(theme).highlightCode("let  delay = Task()", "swift");
    EXPECT_EQ(text.text(), "let  delay = Task()");
    EXPECT_EQ(colorAt(text, "let"), theme.tokenColors.at(TokenType::keyword));
    EXPECT_EQ(colorAt(text, "delay"), theme.plainTextColor);
    EXPECT_EQ(colorAt(text, "Task"), theme.tokenColors.at(TokenType::type));
    EXPECT_EQ(colorAt(text, "  "), std::nullopt);
    theme.tokenColors.erase(TokenType::keyword);
    const auto other = SplashCodeSyntaxHighlighter(theme).highlightCode("let x", std::nullopt);
    EXPECT_EQ(colorAt(other, "let"), theme.plainTextColor) << "a type without colour";
}

TEST(SplashCodeSyntaxHighlighter, UsesTheOneGrammarWhateverTheFenceNames) {
    const SplashCodeSyntaxHighlighter highlighter(midnight());
    const auto swift = highlighter.highlightCode("if x: return 1", "swift");
    EXPECT_EQ(highlighter.highlightCode("if x: return 1", "python"), swift);
    EXPECT_EQ(highlighter.highlightCode("if x: return 1", std::nullopt), swift);
    EXPECT_TRUE(highlighter.highlightCode("", "swift").empty());
}

TEST(Theme, MidnightKeepsEveryKindOfTokenReadableOnTheGroundOfCode) {
    const auto luminance = [](const markdown::RGBColor& color) {
        const auto linear = [](int value) { return std::pow(value / 255.0, 2.2); };
        return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
    };
    const double ground = luminance({0x25, 0x25, 0x2A});
    const Theme theme = midnight();
    EXPECT_EQ(theme.tokenColors.size(), kTokenTypeCount);
    for (const auto& [type, color] : theme.tokenColors) {
        EXPECT_GE((luminance(*color.rgb()) + 0.05) / (ground + 0.05), 4.5) << static_cast<int>(type);
    }
}

} // namespace quillmoth::highlighting
