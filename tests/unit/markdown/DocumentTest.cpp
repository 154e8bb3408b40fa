#include "MarkdownUI/Document/MarkdownContent.h"
#include "MarkdownUI/Layout/SchemeImages.h"

#include <gtest/gtest.h>

namespace quillmoth::markdown {
namespace {

using namespace blocks;
using namespace inlines;

Inline text(std::string literal) {
    return {Text{std::move(literal)}};
}

Block paragraph(Inlines values) {
    return {Paragraph{std::move(values)}};
}

Block words(std::string literal) {
    return paragraph({text(std::move(literal))});
}

TEST(Document, text_becomes_blocks) {
    using enum TextTableColumnAlignment;
    const std::vector<std::pair<std::string_view, Blocks>> cases{
        {"", {}},
        {"\n\n", {}},
        {"> a\n", {{Blockquote{{words("a")}}}}},
        {"- a\n- [x] b\n- [ ] c",
         {{TaskList{true, {{false, {words("a")}}, {true, {words("b")}}, {false, {words("c")}}}}}}},
        {"- a\n\n- b", {{BulletedList{false, {{{words("a")}}, {{words("b")}}}}}}},
        {"1986. A great year", {{NumberedList{true, 1986, {{{words("A great year")}}}}}}},
        {"-", {{BulletedList{true, {ListItem{}}}}}},
        {"```swift x\na\n```", {{CodeBlock{"swift x", "a\n"}}}},
        {"    a", {{CodeBlock{"", "a\n"}}}},
        {"```\nunclosed", {{CodeBlock{"", "unclosed\n"}}}},
        {"<div>\na\n</div>", {{HTMLBlock{"<div>\na\n</div>\n"}}}},
        {"### a", {{Heading{3, {text("a")}}}}},
        {"---", {{ThematicBreak{}}}},
        {"|a|b|c|d|\n|:-|:-:|-:|-|\n|1|",
         {{Table{{leading, center, trailing, std::nullopt},
                 {{{text("a")}, {text("b")}, {text("c")}, {text("d")}}, {{text("1")}, {}, {}, {}}}}}}},
    };
    for (const auto& [source, expected] : cases)
        EXPECT_TRUE(MarkdownContent(source).blocks == expected) << source;
}

TEST(Document, text_becomes_inlines) {
    const std::vector<std::pair<std::string_view, Inlines>> cases{
        {"a `b` c", {text("a "), {Code{"b"}}, text(" c")}},
        {"<b>x</b>", {{HTML{"<b>"}}, text("x"), {HTML{"</b>"}}}},
        {"*a **b***", {{Emphasis{{text("a "), {Strong{{text("b")}}}}}}}},
        {"~~a~~", {{Strikethrough{{text("a")}}}}},
        {"[a](b \"title\")", {{Link{"b", {text("a")}}}}},
        {"![a](b \"title\")", {{inlines::Image{"b", {text("a")}}}}},
        {"[a]()", {{Link{"", {text("a")}}}}},
        {"a\nb", {text("a"), {SoftBreak{}}, text("b")}},
        {"a  \nb", {text("a"), {LineBreak{}}, text("b")}},
    };
    for (const auto& [source, expected] : cases) {
        const MarkdownContent content(source);
        ASSERT_EQ(content.blocks.size(), 1U) << source;
        EXPECT_TRUE(content.blocks[0].get<Paragraph>()->text == expected) << source;
    }
}

TEST(Document, bare_URLs_are_links_and_ill_formed_text_is_replaced) {
    const auto inlinesOf = [](std::string_view source) {
        return MarkdownContent(source).blocks.at(0).get<Paragraph>()->text;
    };
    const Inlines url = inlinesOf("https://example.org");
    // What stood before the address stays in front of it as a text, here an empty one.
    const Link* link = url.back().get<Link>();
    ASSERT_NE(link, nullptr);
    EXPECT_EQ(link->destination, "https://example.org");
    EXPECT_EQ(inlinesAsText(url), "https://example.org");
    EXPECT_EQ(inlinesAsText(inlinesOf(std::string_view("a\0b\xFF", 4))), "a\uFFFDb\uFFFD");
    EXPECT_EQ(inlinesAsText(inlinesOf("a[^1]")), "a[^1]") << "footnotes are off";
}

TEST(Document, equal_documents_have_equal_hashes_and_others_do_not) {
    const std::vector<std::string> texts{
        "a",        "*a*",        "**a**",    "`a`",    "# a",     "## a",        "> a",
        "- a",      "- a\n\n- b", "- a\n- b", "1. a",   "2. a",    "- [ ] a",     "- [x] a",
        "|a|\n|-|", "|a|\n|:-|",  "[a](b)",   "[a](c)", "![a](b)", "```\na\n```", "```x\na\n```",
        "---",      "<p>",        "a\nb",     "a  \nb"};
    for (const std::string& first : texts) {
        for (const std::string& second : texts) {
            const Blocks one = MarkdownContent(first).blocks;
            const Blocks two = MarkdownContent(second).blocks;
            EXPECT_EQ(one == two, first == second) << first << " / " << second;
            EXPECT_EQ(hashValue(one) == hashValue(two), first == second) << first << " / " << second;
        }
    }
}

TEST(Document, inlines_flatten_to_text) {
    const MarkdownContent content("a *b **c*** `d` <i> [e](f) ![g *h*](i)\nj  \nk ~~l~~");
    EXPECT_EQ(inlinesAsText(content.blocks[0].get<Paragraph>()->text), "a b c d <i> e g h j\nk l");
}

TEST(Document, an_image_is_found_alone_or_as_the_only_child_of_a_link) {
    const auto imageOf = [](std::string_view source) {
        return imageOfInline(MarkdownContent(source).blocks[0].get<Paragraph>()->text[0]);
    };
    EXPECT_EQ(imageOf("![a *b*](c)"), (Inline::Image{"c", "a b", std::nullopt}));
    EXPECT_EQ(imageOf("[![a](b)](c)"), (Inline::Image{"b", "a", "c"}));
    EXPECT_EQ(imageOf("[![a](b) d](c)"), std::nullopt);
    EXPECT_EQ(imageOf("*![a](b)*"), std::nullopt);
}

TEST(Document, images_of_the_other_color_scheme_are_removed_everywhere) {
    const std::string dark = "![d](x#GH-Dark-mode-only)";
    const std::string light = "![l](x#gh-light-mode-only)";
    for (const std::string& frame :
         {std::string("%"), std::string("> %"), std::string("- %"), std::string("1. %"),
          std::string("- [ ] %"), std::string("# %"), std::string("|%|\n|-|"), std::string("[**%**](u)"),
          std::string("~~*%*~~")}) {
        const auto fill = [&frame](const std::string& inner) {
            std::string text = frame;
            return MarkdownContent(text.replace(text.find('%'), 1, inner)).blocks;
        };
        const Blocks both = fill("a" + dark + "b" + light);
        EXPECT_TRUE(hasSchemeImages(both)) << frame;
        EXPECT_NE(removeSchemeImages(both, ColorScheme::light), both) << frame;
        EXPECT_EQ(removeSchemeImages(both, ColorScheme::unspecified), both) << frame;
    }
    const Blocks only = MarkdownContent(dark).blocks;
    EXPECT_EQ(removeSchemeImages(only, ColorScheme::light), Blocks{paragraph({})});
    EXPECT_EQ(removeSchemeImages(only, ColorScheme::dark), only);
    EXPECT_FALSE(hasSchemeImages(MarkdownContent("![a](x#other) ![b](%#gh-dark-mode-only)").blocks));
}

} // namespace
} // namespace quillmoth::markdown
