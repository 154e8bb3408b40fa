#include "MarkdownUI/Qt/QtTextEngine.h"
#include "MarkdownUI/Qt/TextBoundaries.h"
#include "MarkdownUI/Qt/UTF16Index.h"

#include <gtest/gtest.h>

#include <string>

namespace quillmoth::markdown {

namespace {

AttributedText plain(std::string text) {
    AttributeContainer attributes;
    attributes.font = Font();
    return {std::move(text), attributes};
}

std::vector<std::string> linesOf(const AttributedText& text, const ShapedText& shaped) {
    std::vector<std::string> lines;
    for (const TextLine& line : shaped.lines())
        lines.push_back(text.text().substr(line.begin, line.end - line.begin));
    return lines;
}

struct QtTextEngineTest : testing::Test {
    QtTextEngine engine{MarkdownPalette::panel()};
};

} // namespace

TEST(UTF16Index, GoesFromBytesToUnitsAndBack) {
    const std::string text = "a\u00E9\U0001F600z\xFFy";
    const UTF16Index index(text);
    EXPECT_EQ(index.text().size(), 7);
    const std::vector<std::pair<std::size_t, int>> borders{{0, 0}, {1, 1}, {3, 2}, {7, 4},
                                                           {8, 5}, {9, 6}, {10, 7}};
    for (const auto& [byte, unit] : borders) {
        EXPECT_EQ(index.utf16Of(byte), unit);
        EXPECT_EQ(index.byteOf(unit), byte);
    }
    EXPECT_EQ(index.utf16Of(2), 1) << "inside a character: its start";
    EXPECT_EQ(index.byteOf(3), 3U) << "between the halves of a pair: its start";
    EXPECT_EQ(index.utf16Of(99), 7);
}

TEST_F(QtTextEngineTest, EndsLinesAtLineFeedsAndKeepsOffsetsInBytes) {
    const AttributedText text = plain("é one\n\ntwo\n");
    const auto shaped = engine.shape(text, {});
    EXPECT_EQ(linesOf(text, *shaped), (std::vector<std::string>{"é one", "", "two", ""}));
    const double width = shaped->lines()[0].advance;
    EXPECT_EQ(shaped->offsetAt(0, width + 100), 6U) << "never behind the line feed";
    EXPECT_EQ(shaped->offsetAt(0, -5), 0U);
    EXPECT_NEAR(shaped->caretX(0, 6), width, 0.01);
    EXPECT_EQ(engine.shape(plain(""), {})->lines().size(), 1U);
}

TEST_F(QtTextEngineTest, WrapsAtTheWidthAndSpacesLinesEvenly) {
    const AttributedText text =
        plain("some words \U0001F600 to wrap and a_very_long_word_that_cannot_fit_at_all");
    TextOptions options;
    options.width = 80;
    options.lineSpacing = 3;
    const auto shaped = engine.shape(text, options);
    const auto& lines = shaped->lines();
    ASSERT_GT(lines.size(), 4U);
    const FontMetrics metrics = engine.metricsOf(Font());
    for (std::size_t line = 0; line < lines.size(); ++line) {
        EXPECT_LE(lines[line].advance, options.width);
        EXPECT_EQ(lines[line].height(), metrics.ascent + metrics.descent)
            << "an emoji must not widen its line";
        EXPECT_EQ(lines[line].top, static_cast<double>(line) * (lines[line].height() + 3));
    }
}

TEST_F(QtTextEngineTest, ATabIsAsWideAsFourCharactersOfItsFont) {
    for (const double size : {12.0, 40.0}) {
        AttributeContainer code;
        code.font = Font{.size = size, .isMonospaced = true};
        const AttributedText text("\ta\tb", code);
        const auto shaped = engine.shape(text, {});
        EXPECT_NEAR(shaped->caretX(0, 1), 4 * engine.metricsOf(*code.font).averageAdvance, 0.1);
        EXPECT_NEAR(shaped->caretX(0, 3), 2 * shaped->caretX(0, 1), 0.1);
    }
}

TEST_F(QtTextEngineTest, SelectsEachDirectionOfMixedTextOnItsOwn) {
    const AttributedText text = plain("abc \u05D0\u05D1\u05D2 def");
    const auto shaped = engine.shape(text, {});
    EXPECT_EQ(shaped->rectanglesOf(0, text.text().size()).size(), 1U);
    EXPECT_EQ(shaped->rectanglesOf(0, 6).size(), 2U) << "the first Hebrew letter stands at the far end";
}

TEST_F(QtTextEngineTest, AlignsByTheDirection) {
    TextOptions options;
    options.width = 400;
    options.direction = TextDirection::rightToLeft;
    const auto leading = engine.shape(plain("\u05D0\u05D1"), options);
    EXPECT_NEAR(leading->lines()[0].x + leading->lines()[0].advance, 400, 0.5);
    options.alignment = TextAlignment::trailing;
    EXPECT_EQ(engine.shape(plain("\u05D0\u05D1"), options)->lines()[0].x, 0);
}

TEST(TextBoundaries, FindWordsLinesAndCharacters) {
    const std::string text = "let caf\u00E9 = 1\nnext";
    EXPECT_EQ(wordAround(text, 5), (std::pair<std::size_t, std::size_t>{4, 9}));
    EXPECT_EQ(wordAround(text, 4), (std::pair<std::size_t, std::size_t>{4, 9}));
    EXPECT_EQ(lineAround(text, 6), (std::pair<std::size_t, std::size_t>{0, 13}));
    EXPECT_EQ(nextCharacter(text, 7), 9U);
    EXPECT_EQ(previousCharacter(text, 9), 7U);
    EXPECT_EQ(nextWord(text, 0), 3U);
    EXPECT_EQ(nextWord(text, 3), 9U);
    EXPECT_EQ(previousWord(text, 9), 4U);
}

} // namespace quillmoth::markdown
