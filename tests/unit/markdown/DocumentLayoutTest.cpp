#include "LayoutFixture.h"

#include <cmath>

namespace quillmoth::markdown {
namespace {

struct DocumentLayoutTest : LayoutFixture {
    static std::string paragraphs(int count) {
        std::string text;
        for (int i = 0; i < count; ++i)
            text += "paragraph " + std::to_string(i) + " with some more words that need two lines here\n\n";
        return text;
    }
};

TEST_F(DocumentLayoutTest, an_empty_document_has_no_height_and_answers_everything) {
    EXPECT_EQ(layout.totalHeight(), 0);
    EXPECT_TRUE(layout.displayList({0, 0, 100, 100}).empty());
    EXPECT_EQ(layout.positionAt({5, 5}), TextPosition{});
    EXPECT_EQ(layout.plainText(layout.wholeRange()), "");
    EXPECT_EQ(layout.linkAt({0, 0}), std::nullopt);
    EXPECT_EQ(layout.firstLineCenter(), 0);
}

TEST_F(DocumentLayoutTest, only_what_the_viewport_needs_is_laid_out) {
    set(paragraphs(5000));
    layout.ensureLaidOut(700);
    EXPECT_LT(engine.shapeCalls, 20U);
    const std::size_t before = engine.shapeCalls;
    const double height = layout.totalHeight();
    (void)layout.ensureLaidOut(height - 700, height);
    EXPECT_LT(engine.shapeCalls - before, 20U) << "jumping to the end lays out the end only";
    const std::size_t atEnd = engine.shapeCalls;
    layout.setOptions({.width = 300, .fontSize = 16});
    layout.ensureLaidOut(700);
    EXPECT_LT(engine.shapeCalls - atEnd, 30U) << "a new width lays out what is seen only";
}

TEST_F(DocumentLayoutTest, what_was_scrolled_past_keeps_its_height_but_not_its_lines) {
    set(paragraphs(2000));
    for (double y = 0; y < 30000; y += 500)
        (void)layout.ensureLaidOut(y, y + 700);
    const double height = layout.totalHeight();
    const std::size_t calls = engine.shapeCalls;
    (void)layout.ensureLaidOut(0, 700);
    EXPECT_GT(engine.shapeCalls, calls) << "the lines had been forgotten";
    EXPECT_EQ(layout.totalHeight(), height);
}

TEST_F(DocumentLayoutTest, scrolling_up_tells_how_far_the_content_moves) {
    std::string text;
    for (int i = 0; i < 200; ++i)
        text += std::string(300, 'i') + " a word that breaks early " + std::string(50, 'm') + "\n\n";
    set(text, 230);
    EXPECT_EQ(layout.ensureLaidOut(0, 1000), 0) << "what grows in sight moves nothing above it";
    double y = layout.totalHeight() / 2;
    (void)layout.ensureLaidOut(y, y + 300);
    for (int step = 0; step < 20; ++step) {
        const TextPosition seen = layout.positionAt({0, y + 20});
        const double place = layout.caretRectangle(seen).y - y;
        const double next = y - 250;
        const double moved = layout.ensureLaidOut(next, next + 300);
        EXPECT_NEAR(layout.caretRectangle(seen).y - (next + moved), place + 250, 0.01);
        y = next + moved;
    }
}

TEST_F(DocumentLayoutTest, estimates_are_near_what_is_laid_out) {
    set(paragraphs(300) + "```\nlet a\nlet b\n```\n\n|a|b|\n|-|-|\n|c|d|\n\n# heading\n\n- item\n");
    const double estimated = layout.totalHeight();
    layout.ensureLaidOut(1e9);
    EXPECT_TRUE(layout.isHeightExact());
    EXPECT_NEAR(layout.totalHeight() / estimated, 1, 0.1);
}

TEST_F(DocumentLayoutTest, parts_of_the_document_look_as_in_the_whole) {
    layOut(paragraphs(20) + "```\n" + std::string(3000, '\n') + "x\n```\n\n|a|\n|-|\n|b|\n|c|\n\nlast\n");
    const double height = layout.totalHeight();
    const std::string whole = describe(layout.displayList({0, 0, 400, height}));
    for (const double y : {100.0, 1500.0, height - 150}) {
        for (const DisplayItem& item : layout.displayList({0, y, 400, 60})) {
            if (!std::holds_alternative<ScrollRegionItem>(item)) {
                EXPECT_NE(whole.find(describe(DisplayList{item})), std::string::npos) << describe({item});
            }
            EXPECT_LT(frameOf(item).y, y + 60);
            EXPECT_GT(frameOf(item).bottom(), y);
        }
    }
}

TEST_F(DocumentLayoutTest, a_long_paragraph_in_parts_has_the_lines_of_one) {
    std::string words;
    for (int i = 0; words.size() < 60000; ++i)
        words += "word" + std::to_string(i % 97) + (i % 50 == 0 ? " \\\n" : " ");
    set(words, 380);
    double bottom = 0;
    std::string joined;
    layout.ensureLaidOut(1e9);
    for (const DisplayItem& item : everything()) {
        const auto& line = std::get<TextLineItem>(item);
        const TextLine& shape = line.shaped->lines()[line.line];
        if (bottom > 0) {
            EXPECT_NEAR(line.frame.y, bottom + 2, 0.01);
        }
        bottom = line.frame.bottom();
        joined += line.text->text().substr(shape.begin, shape.end - shape.begin);
    }
    std::string expected = layout.textOfBlock(0);
    std::erase(expected, '\n');
    std::erase(joined, '\n');
    EXPECT_EQ(joined, expected);
    AttributeContainer attributes;
    attributes.font = Font{.size = 16};
    const AttributedText all(layout.textOfBlock(0), attributes);
    const auto shaped = engine.shape(all, {.width = 380, .lineSpacing = 2, .font = {.size = 16}});
    EXPECT_NEAR(bottom, shaped->lines().back().top + shaped->lines().back().height(), 0.01);
}

TEST_F(DocumentLayoutTest, a_long_paragraph_with_an_image_is_cut_between_characters) {
    images.sizes["http://x"] = {20, 20};
    for (const char* word : {"\xD0\xB6", "\xD0\xB6\xD0\xB6 "}) {
        std::string words = "![i](http://x)";
        while (words.size() < 40000)
            words += word;
        set(words);
        (void)layout.ensureLaidOut(layout.totalHeight() - 1,
                                   layout.totalHeight()); // no part before it is seen
        layout.ensureLaidOut(1e9);
        for (const DisplayItem& item : everything()) {
            const std::string& part = std::get<TextLineItem>(item).text->text();
            EXPECT_NE(part.front() & 0xC0, 0x80);
            EXPECT_NE(part.back(), '\xD0');
        }
        const std::string text = layout.textOfBlock(0);
        for (std::size_t offset = 8180; offset < 8210; ++offset) {
            if ((text[offset] & 0xC0) == 0x80)
                continue;
            const Rect caret = layout.caretRectangle({0, offset});
            EXPECT_EQ(layout.positionAt({caret.x, caret.y + 1}), (TextPosition{0, offset}));
        }
    }
}

TEST_F(DocumentLayoutTest, the_copy_button_tells_that_it_was_pressed) {
    layOut("text\n\n```\nfirst\n```\n\n    second\n");
    EXPECT_EQ(layout.codeBlockText(1), "second");
    const Rect button = layout.copyButtonFrame(1);
    EXPECT_EQ(layout.copyButtonAt({button.x + 1, button.y + 1}), 1U);
    EXPECT_EQ(layout.copyButtonAt({button.x - 1, button.y + 1}), std::nullopt);
    layout.setJustCopy(1, true);
    const std::string list = describe(everything());
    EXPECT_NE(list.find("doc.on.doc \"Copy code\""), std::string::npos);
    EXPECT_NE(list.find("checkmark \"Copied\""), std::string::npos);
    EXPECT_EQ(layout.copyButtonFrame(1), button) << "the wider of the two labels decides";
    layout.setContent(MarkdownContent("text\n\n```\nfirst\n```\n\n    second\n    more\n"));
    EXPECT_NE(describe(everything()).find("Copied"), std::string::npos);
}

TEST_F(DocumentLayoutTest, a_long_code_line_scrolls_within_its_range) {
    layOut("```\n" + std::string(100, 'x') + "\n```");
    const ScrollRegionItem region = layout.scrollRegion(0);
    EXPECT_EQ(region.frame.width, 384);
    EXPECT_EQ(region.contentWidth, 100 * 7.5 + 32);
    layout.setScrollOffset(0, 1e9);
    EXPECT_EQ(layout.scrollRegion(0).offset, region.contentWidth - 384);
    const double y = layout.scrollRegion(0).frame.y + 40;
    EXPECT_EQ(layout.positionAt({16 + 16 + 2, y}).offset, 53U) << "hit tests follow the offset";
    layout.setScrollOffset(0, -5);
    EXPECT_EQ(layout.scrollRegion(0).offset, 0);
}

TEST_F(DocumentLayoutTest, long_code_has_each_of_its_lines_once_and_evenly) {
    for (const std::size_t count : {1U, 47U, 48U, 49U, 100U}) {
        std::string code;
        for (std::size_t line = 0; line < count; ++line)
            code += "line " + std::to_string(line) + "\n";
        set("```\n" + code + "\n```");
        std::vector<double> tops;
        for (const DisplayItem& item : everything()) {
            if (const auto* line = std::get_if<TextLineItem>(&item))
                tops.push_back(line->frame.y);
        }
        ASSERT_EQ(tops.size(), count + 1) << "the last one is empty";
        for (std::size_t line = 0; line <= count; ++line)
            EXPECT_EQ(tops[line], 36 + 20 * static_cast<double>(line));
        EXPECT_EQ(layout.totalHeight(), tops.back() + 18 + 16);
    }
}

TEST_F(DocumentLayoutTest, a_table_scrolls_before_its_words_are_broken) {
    const std::string row = "| management | concurrency | programming | [compilers](https://e.org) |\n";
    layOut(row + "|-|-|-|-|\n" + row);
    const ScrollRegionItem region = layout.scrollRegion(0);
    EXPECT_EQ(region.frame.width, 400);
    EXPECT_GT(region.contentWidth, 400);
    const std::string list = describe(everything());
    EXPECT_NE(list.find("\"concurrency\""), std::string::npos) << "in one line";
    EXPECT_LE(layout.usedWidth(), 400) << "the rest is scrolled to";
    const double middle = region.frame.y + region.frame.height * 3 / 4;
    EXPECT_EQ(layout.linkAt({320, middle}), std::nullopt);
    layout.setScrollOffset(0, 1e9);
    EXPECT_EQ(layout.scrollRegionAt({1, middle})->offset, region.contentWidth - 400);
    EXPECT_EQ(layout.linkAt({320, middle}), "https://e.org") << "hit tests follow the offset";
    set("| a | https://example.org/" + std::string(60, 'x') + " |\n|-|-|\n");
    EXPECT_EQ(layout.scrollRegion(0).contentWidth, 400) << "what is no word is broken";
    layout.setScrollOffset(0, 0);
    layOut("| הההההההה | וווווווווווו | זזזזזזזזזזזז | חחחחחחחחחחחח |\n|-|-|-|-|\n");
    EXPECT_GT(layout.scrollRegion(0).offset, 0) << "where its first column is";
}

TEST_F(DocumentLayoutTest, code_and_HTML_lose_one_line_feed_at_their_end) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"```\na\n```", "a"}, {"```\n\na\n\n\n```", "\na\n\n"}, {"```\n\n```", ""},
        {"```\n```", ""},     {"    a\n    b", "a\nb"},         {"<p>\na\n", "<p>\na"},
    };
    for (const auto& [text, expected] : cases) {
        set(text);
        EXPECT_EQ(layout.plainText(layout.wholeRange()), expected) << text;
        if (layout.codeBlockCount() > 0) {
            EXPECT_EQ(layout.codeBlockText(0), expected) << "copied from " << text;
        }
    }
}

TEST_F(DocumentLayoutTest, images_that_arrive_take_their_room) {
    layOut("![a](https://example.org/a.png)\n\nsee ![b](https://example.org/b.png) here");
    const double before = layout.totalHeight();
    images.sizes["https://example.org/a.png"] = {100, 300};
    images.sizes["https://example.org/b.png"] = {900, 90};
    layout.imagesChanged();
    layout.ensureLaidOut(1000);
    EXPECT_GT(layout.totalHeight(), before + 250);
    EXPECT_EQ(layout.textOfBlock(0), "see \xEF\xBF\xBC here");
    EXPECT_EQ(layout.plainText(layout.wholeRange()), "see  here");
    EXPECT_LE(layout.usedWidth(), 400);
}

TEST_F(DocumentLayoutTest, code_gets_the_colors_of_its_highlighter) {
    struct Red : CodeSyntaxHighlighter {
        AttributedText highlightCode(std::string_view content,
                                     std::optional<std::string_view> language) const override {
            EXPECT_EQ(language, "swift");
            AttributeContainer red;
            red.foregroundColor = Color::fromHex(0xFF0000);
            AttributedText text(std::string(content.substr(0, 3)), red);
            text.append(content.substr(3), {});
            return text;
        }
    };

    const Red red;
    layout.setCodeSyntaxHighlighter(&red);
    set("```swift\nlet a\n```");
    const std::string list = describe(everything());
    EXPECT_NE(list.find("\"let\" [15 mono #FF0000] \" a\" [15 mono]"), std::string::npos) << list;
}

} // namespace
} // namespace quillmoth::markdown
