#include "Foundation/Text.h"
#include "MarkdownUI/Document/ParsePlan.h"
#include "MarkdownUI/Layout/SchemeImages.h"

#include "LayoutFixture.h"

namespace quillmoth::markdown {
namespace {

using Pathology = LayoutFixture;

std::string repeated(std::string_view text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

std::string nestedList(int depth) {
    std::string text;
    for (int i = 0; i < depth; ++i)
        text += repeated("  ", i) + "- x\n";
    return text;
}

std::string wideTable(int columns) {
    return repeated("|cell ", columns) + "|\n" + repeated("|-", columns) + "|\n" +
           repeated("|some words ", columns) + "|\n";
}

/// What a document costs: bytes given to the engine when all of it is laid out.
std::size_t costOf(const std::string& text) {
    FixedTextEngine engine;
    FixedImageSource images;
    DocumentLayout layout(engine, images, Theme::basic());
    layout.setOptions({.width = 500, .fontSize = 16});
    MarkdownContent content(text);
    EXPECT_EQ(content, MarkdownContent(text));
    EXPECT_EQ(hashValue(removeSchemeImages(content.blocks, ColorScheme::light)), hashValue(content.blocks));
    layout.setContent(std::move(content));
    layout.ensureLaidOut(1e12);
    (void)layout.displayList({0, 0, 500, layout.totalHeight()});
    (void)layout.documentText();
    (void)layout.parts();
    return engine.bytesShaped;
}

TEST_F(Pathology, work_grows_with_the_text_and_not_faster) {
    const std::vector<std::tuple<const char*, std::string, std::string>> cases{
        {"nested quotes", repeated("> ", 1000) + "x", repeated("> ", 4000) + "x"},
        {"nested lists", nestedList(250), nestedList(500)},
        {"lists on a line", repeated("- ", 1000) + "x", repeated("- ", 4000) + "x"},
        {"emphasis", repeated("*a **b ", 1000) + repeated("** *", 1000),
         repeated("*a **b ", 4000) + repeated("** *", 4000)},
        {"links", repeated("[", 5000) + "a", repeated("[", 20000) + "a"},
        {"a long line", repeated("word ", 50000), repeated("word ", 200000)},
        {"a line without blanks", std::string(100000, 'x'), std::string(400000, 'x')},
        {"a long line of code", "```\n" + std::string(250000, 'x'), "```\n" + std::string(1000000, 'x')},
        {"unclosed fences", repeated("```\n", 1001), repeated("```\n", 4001)},
        {"a wide table", wideTable(50), wideTable(200)},
        {"a long table", wideTable(3) + repeated("|a|b|c|\n", 2000),
         wideTable(3) + repeated("|a|b|c|\n", 8000)},
        {"a long list", repeated("1. item\n", 2000), repeated("1. item\n", 8000)},
        {"headings", repeated("# h\n", 2000), repeated("# h\n", 8000)},
    };
    for (const auto& [name, small, large] : cases) {
        const double growth = static_cast<double>(large.size()) / static_cast<double>(small.size());
        EXPECT_LT(static_cast<double>(costOf(large)),
                  growth * 1.3 * static_cast<double>(costOf(small)) + 1000)
            << name;
    }
}

/// Each of these makes the parser take seconds for 256 KB, or fill all memory.
TEST_F(Pathology, what_the_parser_takes_minutes_for_is_not_parsed_and_usual_texts_are) {
    constexpr int kBytes = 256 * 1024;
    const auto filled = [](std::string_view piece) {
        return repeated(piece, kBytes / static_cast<int>(piece.size()));
    };
    const std::string prose = "A paragraph with [a link](https://example.org/a), `code` and <b>more</b>.\n\n";
    const std::string shortRows = wideTable(800) + repeated("a\n", 8000);
    const std::string lazyLines = repeated(">", 4000) + "x\n" + repeated("a\n", 100'000);

    const std::vector<std::tuple<const char*, std::string, ParsePlan>> cases{
        {"images", filled("![[]()"), ParsePlan::never},
        {"instructions", "a " + filled("<?"), ParsePlan::never},
        {"declarations", "a " + filled("<!A "), ParsePlan::never},
        {"character data", "a " + filled("<![CDATA["), ParsePlan::never},
        {"addresses", filled("a@b."), ParsePlan::never},
        {"short rows", shortRows, ParsePlan::never},
        {"short rows, other line ends", replacingAll(shortRows, "\n", "\r"), ParsePlan::never},
        {"short rows, fewer", wideTable(400) + repeated("a\n", 1000), ParsePlan::never},
        {"lazy lines", lazyLines, ParsePlan::never},
        {"images, few", repeated("![[]()", 4000), ParsePlan::later},
        {"too long", repeated(prose, 4 * kBytes / 60), ParsePlan::never},
        {"long prose", filled(prose), ParsePlan::later},
        {"a long list", filled("- [a](https://b) [c](https://d)\n"), ParsePlan::later},
        {"long code", "```\n" + filled("if (a[i] < b) { return a[i]; }\n\nint b;\n") + "```\n",
         ParsePlan::later},
        {"a long table", wideTable(10) + repeated("|a|b|c|d|e|f|g|h|i|j|\n", 5000), ParsePlan::later},
        {"prose", repeated(prose, 500), ParsePlan::atOnce},
        {"code", "```\n" + repeated("if (a[i] < b) { return a[i]; }\n", 500) + "```\n", ParsePlan::atOnce},
        {"nothing", "", ParsePlan::atOnce},
    };
    for (const auto& [name, text, plan] : cases)
        EXPECT_EQ(parsePlanOf(text), plan) << name;
}

TEST_F(Pathology, what_is_nested_too_deep_keeps_its_text) {
    constexpr int kDepth = 3 * kDeepestNesting;
    for (const std::string& text : {repeated("> ", kDepth) + "deep", repeated("- ", kDepth) + "deep",
                                    repeated("*a **b ", kDepth) + "deep" + repeated("** *", kDepth)}) {
        set(text);
        EXPECT_NE(layout.documentText().find("deep"), std::string::npos);
    }
    int depth = 0;
    const MarkdownContent content(repeated("> ", kDepth) + "x");
    const Blocks* blocks = &content.blocks;
    while (const auto* quote = blocks->front().get<blocks::Blockquote>()) {
        blocks = &quote->blocks;
        ++depth;
    }
    EXPECT_EQ(depth, kDeepestNesting);
}

TEST_F(Pathology, deep_nesting_leaves_room_for_its_text) {
    layOut(repeated("> ", 200) + "words in there\n\n" + nestedList(60), 300);
    for (const DisplayItem& item : everything()) {
        EXPECT_GE(frameOf(item).x, 0);
        EXPECT_LE(frameOf(item).right(), 300);
    }
}

} // namespace
} // namespace quillmoth::markdown
