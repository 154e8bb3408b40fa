#include "Foundation/Text.h"
#include "Quillmoth/Highlighting/SplashCodeSyntaxHighlighter.h"
#include "Quillmoth/Highlighting/SyntaxHighlighter.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth::highlighting {

namespace {

constexpr std::string_view kBlanks = " \t\n\v\f\r";
constexpr std::array<const char*, kTokenTypeCount> kNames{
    "keyword", "string", "type", "call", "number", "comment", "property", "dotAccess", "preprocessing"};

/// Keeps the pieces: their kinds, "" for plain text and " " for white space, and their texts.
struct PieceFormat {
    using Pieces = std::vector<std::pair<std::string, std::string>>;

    struct Builder {
        void addToken(std::string_view token, TokenType type) {
            pieces.emplace_back(kNames[static_cast<std::size_t>(type)], token);
        }

        void addPlainText(std::string_view text) { pieces.emplace_back("", text); }

        void addWhitespace(std::string_view whitespace) { pieces.emplace_back(" ", whitespace); }

        Pieces build() { return pieces; }

        Pieces pieces;
    };

    [[nodiscard]] Builder makeBuilder() const { return {}; }
};

PieceFormat::Pieces piecesOf(std::string_view code) {
    return SyntaxHighlighter(PieceFormat(), SwiftGrammar()).highlight(code);
}

/// "keyword(let)", plain text as it is, white space in square brackets with "n" for a line feed and "." for
/// anything else.
std::string listingOf(std::string_view code) {
    std::string listing;
    for (auto [kind, text] : piecesOf(code)) {
        if (kind == " ")
            std::replace_if(
                text.begin(), text.end(), [](char byte) { return byte != '\n'; }, '.');
        std::replace(text.begin(), kind == " " ? text.end() : text.begin(), '\n', 'n');
        listing += kind.empty() ? text : kind == " " ? "[" + text + "]" : kind + "(" + text + ")";
    }
    return listing;
}

using markdown::Color;

Theme midnight() {
    return Theme::midnight(Font(16));
}

std::optional<Color> colorAt(const markdown::AttributedText& text, std::string_view piece) {
    const auto* run = text.runAt(text.text().find(piece));
    return run != nullptr ? run->attributes->foregroundColor : std::nullopt;
}

} // namespace

TEST(SyntaxHighlighter, MakesOfEachExampleWhatItsFileSays) {
    std::istringstream examples(test::contentOf(QUILLMOTH_HIGHLIGHTING_EXAMPLES));
    std::size_t count = 0;
    for (std::string code, listing; std::getline(examples, code);) {
        if (code.empty() || code.starts_with("== "))
            continue;
        std::getline(examples, listing);
        code = replacingAll(code, "\u00B6", "\n");
        EXPECT_EQ("    " + listingOf(code), listing) << "of: " << code;
        ++count;
    }
    EXPECT_EQ(count, 50U);
}

TEST(SyntaxHighlighter, PiecesJoinedAreTheTextWhateverItHolds) {
    EXPECT_EQ(piecesOf("").size(), 0U);
    EXPECT_EQ(piecesOf("\n \t\n").size(), 1U) << "white space is one piece over the ends of lines";
    const std::array<std::string_view, 24> parts{
        "\"", "\"\"\"", "#",   "\\(", "\\#(", ")",   "(",    "/*",  "*/", "//", "\n",       " ",
        "\t", ".",      "...", "@",   "`",    "let", "Type", "0x1", "9.", "\r", "\xC3\xA9", "\xFF"};
    std::mt19937 random(20);
    for (int round = 0; round < 3000; ++round) {
        std::string code;
        for (std::size_t count = random() % 40; count > 0; --count) {
            code += parts[random() % parts.size()];
        }
        std::string joined;
        for (const auto& [kind, text] : piecesOf(code)) {
            joined += text;
            const auto place = kind.empty() ? text.find_first_of(kBlanks) : text.find_first_not_of(kBlanks);
            ASSERT_EQ(place != std::string::npos, !kind.empty() && kind != " ") << code;
            ASSERT_FALSE(text.empty()) << code;
        }
        ASSERT_EQ(joined, code);
    }
}

TEST(SyntaxHighlighter, StatesAreEqualExactlyWhenTheSameIsOpen) {
    const SwiftGrammar grammar;
    std::vector<Piece> pieces;
    const auto after = [&](std::string_view line) { return grammar.step(line, {}, pieces); };
    EXPECT_EQ(after("let x = \"open"), LineState());
    EXPECT_EQ(after("x /* a"), after("/* other text"));
    EXPECT_NE(after("/* a"), after("/* a /* b"));
    EXPECT_NE(after("\"\"\""), after("#\"\"\""));
    EXPECT_EQ(grammar.step("*/", after("/* a"), pieces), LineState());
}

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
