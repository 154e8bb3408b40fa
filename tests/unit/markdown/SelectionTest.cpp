#include "LayoutFixture.h"

namespace quillmoth::markdown {
namespace {

using SelectionTest = LayoutFixture;

TEST_F(SelectionTest, copied_text_keeps_blocks_markers_and_cells_apart) {
    set("# Title\n\nfirst *paragraph*\n\n- one\n- two\n  - inner\n\n3. third\n\n- [x] "
        "done\n\n```\na\n\nb\n```\n\n"
        "|h1|h2|\n|-|-|\n|c1|c2|\n\n> quote\n\n<p>\n");
    constexpr const char* kExpected =
        "Title\n\nfirst paragraph\n\n• one\n• two\n\t◦ inner\n\n3. third\n\n☑ done\n\n"
        "a\n\nb\n\nh1\th2\nc1\tc2\n\nquote\n\n<p>";
    EXPECT_EQ(layout.plainText(layout.wholeRange()), kExpected);
    EXPECT_EQ(layout.documentText(), kExpected);
    EXPECT_EQ(layout.plainText({{2, 0}, {2, 3}}), "one") << "within an item its marker stays behind";
    EXPECT_EQ(layout.plainText({{2, 0}, {3, 2}}), "• one\n• tw");
    EXPECT_EQ(layout.plainText({{2, 1}, {3, 2}}), "ne\n• tw");
}

TEST_F(SelectionTest, document_offsets_and_positions_agree) {
    set("a\n\n- bc\n- d\n\n|e|f|\n|-|-|\n\n```\ng\nh\n```");
    const std::string& text = layout.documentText();
    for (std::size_t block = 0; block < layout.textBlockCount(); ++block) {
        const std::string content = layout.textOfBlock(block);
        for (std::size_t offset = 0; offset <= content.size(); ++offset) {
            const std::size_t place = layout.documentOffset({block, offset});
            EXPECT_EQ(text.compare(place, content.size() - offset, content, offset), 0);
            EXPECT_EQ(layout.positionAtDocumentOffset(place), (TextPosition{block, offset}));
        }
    }
    EXPECT_EQ(layout.positionAtDocumentOffset(2), (TextPosition{1, 0})) << "in a separator: the next block";
}

TEST_F(SelectionTest, points_and_carets_agree_everywhere) {
    layOut(
        "# Heading\n\nA paragraph that is long enough to be wrapped, with `code` and more words\n\n- item\n  "
        "- inner\n\n"
        "```\nlet a\n  let b\n```\n\n|a|bb|\n|:-:|-:|\n|ccc|d|\n\nשלום עולם\n");
    for (std::size_t block = 0; block < layout.textBlockCount(); ++block) {
        const std::string content = layout.textOfBlock(block);
        for (std::size_t offset = 0; offset <= content.size(); ++offset) {
            if (offset < content.size() && (static_cast<unsigned char>(content[offset]) & 0xC0) == 0x80)
                continue;
            const Rect caret = layout.caretRectangle({block, offset});
            const TextPosition hit = layout.positionAt({caret.x, caret.y + caret.height / 2});
            EXPECT_EQ(hit, (TextPosition{block, offset})) << content;
        }
    }
    EXPECT_EQ(layout.positionAt({0, -10}), (TextPosition{0, 0}));
    EXPECT_EQ(layout.positionAt({0, 1e6}), layout.wholeRange().end);
}

TEST_F(SelectionTest, a_selection_covers_its_text_and_no_more) {
    layOut("first words\n\n- second\n\nthird");
    const auto rectangles = layout.selectionRectangles({{0, 6}, {2, 2}}, {0, 0, 400, 1000});
    ASSERT_EQ(rectangles.size(), 3U);
    EXPECT_EQ(rectangles[0].x, 48);
    EXPECT_EQ(rectangles[0].width, 40);
    EXPECT_EQ(rectangles[1].x, 32);
    EXPECT_EQ(rectangles[1].width, 48);
    EXPECT_EQ(rectangles[2].width, 16);
    EXPECT_TRUE(layout.selectionRectangles({{0, 3}, {0, 3}}, {0, 0, 400, 1000}).empty());
    EXPECT_EQ(layout.selectionRectangles(layout.wholeRange(), {0, 0, 400, 10}).size(), 1U);
}

TEST_F(SelectionTest, parts_are_known_without_layout) {
    set("## A *b*\n\nsee [one](a) and [two](<b c>)\n\n- # C\n\n|[three](https://x.org)|\n|-|\n");
    const std::size_t before = engine.shapeCalls;
    const auto parts = layout.parts();
    ASSERT_EQ(parts.size(), 4U);
    EXPECT_EQ(
        parts[0],
        (PartInfo{.kind = PartInfo::Kind::heading, .level = 2, .range = {{0, 0}, {0, 3}}, .text = "A b"}));
    EXPECT_EQ(parts[1], (PartInfo{.kind = PartInfo::Kind::link,
                                  .range = {{1, 4}, {1, 7}},
                                  .text = "one",
                                  .destination = "https://example.org/a"}));
    EXPECT_EQ(parts[2].level, 1);
    EXPECT_EQ(parts[3].destination, "https://x.org");
    EXPECT_EQ(engine.shapeCalls, before);
    const Rect link = layout.selectionRectangles(parts[1].range, {0, 0, 400, 1000}).front();
    EXPECT_EQ(layout.linkAt({link.x + 1, link.y + 1}), "https://example.org/a");
    EXPECT_EQ(layout.linkAt({link.x - 1, link.y + 1}), std::nullopt);
    EXPECT_TRUE(layout.isTextAt({link.x + 1, link.y + 1}));
    EXPECT_FALSE(layout.isTextAt({390, link.y + 1}));
}

} // namespace
} // namespace quillmoth::markdown
