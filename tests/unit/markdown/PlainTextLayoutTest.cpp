#include "MarkdownUI/Layout/PlainTextLayout.h"

#include "FixedTextEngine.h"

#include <gtest/gtest.h>

#include <random>

namespace quillmoth::markdown {
namespace {

struct PlainTextLayoutTest : testing::Test {
    PlainTextLayoutTest() { layout.setOptions(options); }

    const PlainTextOptions options{.width = 200, .font = {.size = 16}, .lineSpacing = 2};
    FixedTextEngine engine;
    PlainTextLayout layout{engine};
};

/// The lines of a layout: their text and place.
std::vector<std::pair<std::string, Rect>> linesOf(PlainTextLayout& layout) {
    std::vector<std::pair<std::string, Rect>> result;
    for (const DisplayItem& item : layout.displayList({0, 0, 1000, 1e9})) {
        const auto& line = std::get<TextLineItem>(item);
        const TextLine& shape = line.shaped->lines()[line.line];
        result.emplace_back(line.text->text().substr(shape.begin, shape.end - shape.begin), line.frame);
    }
    return result;
}

std::string sampleText(std::mt19937& random, int words) {
    const std::vector<std::string> pieces{
        "a",    "word", "longer-word",
        "\n",   "\n\n", "é",
        "שלום", "🤖", "a-word-that-is-longer-than-a-whole-line-of-the-page"};
    std::string text;
    for (int i = 0; i < words; ++i)
        text += pieces[random() % pieces.size()] + (random() % 7 == 0 ? "" : " ");
    return text;
}

TEST_F(PlainTextLayoutTest, any_pieces_give_the_lines_of_the_whole) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        std::mt19937 random(seed);
        const std::string text = sampleText(random, 200);
        PlainTextLayout whole(engine);
        whole.setOptions(options);
        whole.setText(text);
        PlainTextLayout grown(engine);
        grown.setOptions(options);
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t length = 1 + random() % 9;
            grown.append(std::string_view(text).substr(at, length));
            at += length;
        }
        ASSERT_EQ(grown.text(), text);
        const auto expected = linesOf(whole);
        const auto lines = linesOf(grown);
        ASSERT_EQ(lines.size(), expected.size()) << seed;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            EXPECT_EQ(lines[i].first, expected[i].first) << seed;
            EXPECT_NEAR(lines[i].second.y, expected[i].second.y, 0.01) << seed;
            EXPECT_NEAR(lines[i].second.x, expected[i].second.x, 0.01) << seed;
        }
        EXPECT_NEAR(grown.totalHeight(), whole.totalHeight(), 0.01);
    }
}

TEST_F(PlainTextLayoutTest, an_append_costs_the_same_however_long_the_paragraph_is) {
    std::size_t early = 0;
    std::size_t total = 0;
    for (int i = 0; i < 100000; ++i) {
        layout.append("words ");
        if (i % 16 == 0)
            (void)layout.displayList({0, layout.totalHeight() - 400, 200, 400});
        if (i == 10000)
            early = engine.bytesShaped;
        total = engine.bytesShaped;
    }
    EXPECT_LT(static_cast<double>(total - early) / 90000, 1.2 * static_cast<double>(early) / 10000);
    EXPECT_LT(total / 100000, 60U) << "a line has 25 characters";
}

TEST_F(PlainTextLayoutTest, a_long_text_that_comes_at_once_is_laid_out_where_it_is_seen) {
    std::string text;
    for (int i = 0; i < 20000; ++i)
        text += i % 100 == 99 ? "end of a paragraph\n" : "some words and ";
    layout.setText(text);
    (void)layout.displayList({0, 0, 200, 700});
    EXPECT_LT(engine.bytesShaped, 20000U);
    (void)layout.displayList({0, layout.totalHeight() / 2, 200, 700});
    layout.append("more");
    EXPECT_LT(engine.bytesShaped, 40000U);
    EXPECT_EQ(layout.positionAt({0, 1e9}).offset, text.size() + 4);
}

TEST_F(PlainTextLayoutTest, a_character_shows_when_it_is_complete) {
    layout.append("a\xF0\x9F");
    EXPECT_EQ(linesOf(layout).front().first, "a");
    layout.append("\xA4\x96");
    EXPECT_EQ(linesOf(layout).front().first, "a🤖");
}

TEST_F(PlainTextLayoutTest, carets_points_and_selections_agree) {
    const std::string text = "first line of words that wraps\n\nthird paragraph";
    for (const char c : text)
        layout.append(std::string_view(&c, 1));
    for (std::size_t offset = 0; offset <= text.size(); ++offset) {
        const Rect caret = layout.caretRectangle({0, offset});
        EXPECT_EQ(layout.positionAt({caret.x, caret.y + 1}).offset, offset);
    }
    const auto rectangles = layout.selectionRectangles({{0, 6}, {0, 37}}, {0, 0, 200, 1000});
    ASSERT_EQ(rectangles.size(), 3U);
    EXPECT_EQ(rectangles[0].x, 48);
    EXPECT_EQ(rectangles[2].width, 40);
}

} // namespace
} // namespace quillmoth::markdown
