// Feeds mutated Markdown through document, layout, text and hit tests. Whatever goes wrong ends the process:
// run it under the sanitizers.
//
//   MarkdownFuzz COUNT [SEED]    the inputs SEED, SEED + 1, ... ; each depends on its number alone

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "FixedTextEngine.h"
#include "Foundation/FatalError.h"
#include "MarkdownUI/DocumentLayout.h"
#include "MarkdownUI/PlainTextLayout.h"

namespace quillmoth::markdown {
namespace {

using Random = std::mt19937_64;

const std::vector<std::string>& seeds() {
    static const std::vector<std::string> texts{
        "# Heading *with* `code`\n\nparagraph  \nbroken\n\n> quote\n> > inner\n",
        "- a\n- [x] b\n  1. c\n     - d\n\n10. e\n\n11. f\n",
        "```swift\nlet a = 1\n```\n\n    code\n\n~~~\nopen",
        "|a|b|\n|:-|-:|\n|c|![i](icon.png)|\n|**d|e\n",
        "[![a](b)](c) ![d](icon.png#gh-dark-mode-only)\n![e](icon.png)  \n![f](g)\n",
        "***a **b ~~c~~* [d](e \"f\") <b>&amp; https://x.org a@b.c\\\nend",
        "שלום *עולם*\n\n- פריט\n\n|א|b|\n|-|-|\n",
        "<div>\n</div>\n\n---\n\n[x]: y\n[x]\n",
    };
    return texts;
}

const std::vector<std::string>& tokens() {
    static const std::vector<std::string> texts{"*",     "**",
                                                "_",     "~~",
                                                "`",     "```\n",
                                                "[",     "](",
                                                ")",     "![",
                                                "> ",    "- ",
                                                "1. ",   "# ",
                                                "|",     "|-|\n",
                                                "\n",    "\n\n",
                                                "    ",  "\t",
                                                "<",     ">",
                                                "&#0;",  "\\",
                                                "---\n", "[ ] ",
                                                "\xFF",  "\xE2\x80",
                                                "é",     "ש",
                                                "🤖",  "https://a.b",
                                                "%",     std::string(1, '\0')};
    return texts;
}

std::string makeInput(std::uint64_t number) {
    Random random(number);
    const auto pick = [&random](std::size_t count) { return static_cast<std::size_t>(random() % count); };
    std::string text = seeds()[pick(seeds().size())];
    if (pick(3) == 0)
        text += seeds()[pick(seeds().size())];
    for (std::size_t i = pick(12); i > 0; --i) {
        const std::size_t at = pick(text.size() + 1);
        switch (pick(5)) {
        case 0:
            text.erase(at, pick(8));
            break;
        case 1:
            if (at < text.size())
                text[at] = static_cast<char>(random());
            break;
        case 2:
            text.insert(at, text.substr(pick(text.size() + 1), pick(30)));
            break;
        default: {
            const std::string& token = tokens()[pick(tokens().size())];
            for (std::size_t times = pick(20) == 0 ? pick(300) : 1; times > 0; --times)
                text.insert(at, token);
            break;
        }
        }
    }
    return text;
}

void require(bool condition, const char* what) {
    if (!condition)
        fatalError(what);
}

void checkDocument(const std::string& text, Random& random) {
    FixedTextEngine engine;
    FixedImageSource images;
    images.sizes = {{"icon.png", {40, 24}}, {"icon.png#gh-dark-mode-only", {900, 5}}};
    DocumentLayout layout(engine, images, Theme::basic());
    layout.setOptions({.width = static_cast<double>(random() % 600), .fontSize = 16});
    layout.setContent(MarkdownContent(text));
    const double estimated = layout.totalHeight();
    (void)layout.ensureLaidOut(estimated / 2, estimated / 2 + 100);
    layout.ensureLaidOut(1e12);
    require(layout.isHeightExact(), "a height is not exact");
    require(std::isfinite(layout.totalHeight()), "a height is not finite");
    (void)describe(layout.displayList({0, 0, 600, layout.totalHeight()}));
    const std::string& all = layout.documentText();
    require(layout.plainText(layout.wholeRange()).size() <= all.size(), "the copy is longer than the text");
    for (int i = 0; i < 4; ++i) {
        const Point point{static_cast<double>(random() % 600),
                          std::fmod(static_cast<double>(random() % 10000), layout.totalHeight() + 20)};
        const TextPosition position = layout.positionAt(point);
        require(layout.textBlockCount() == 0 || position.block < layout.textBlockCount(), "no such block");
        require(position.offset <= layout.textOfBlock(position.block).size(), "an offset behind the text");
        (void)layout.caretRectangle(position);
        (void)layout.linkAt(point);
        (void)layout.selectionRectangles(
            {std::min(position, layout.wholeRange().end), layout.wholeRange().end}, {0, 0, 600, 500});
    }
    for (const LinkInfo& link : layout.links())
        require(link.range.end.offset <= layout.textOfBlock(link.range.end.block).size(),
                "a link behind the text");
}

void checkStream(const std::string& text, Random& random) {
    FixedTextEngine engine;
    PlainTextLayout layout(engine);
    layout.setOptions({.width = 40.0 + static_cast<double>(random() % 300), .font = {.size = 16}});
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = 1 + random() % 40;
        layout.append(std::string_view(text).substr(at, length));
        at += length;
    }
    (void)layout.displayList({0, 0, 600, layout.totalHeight()});
    require(layout.positionAt({5, layout.totalHeight() / 2}).offset <= text.size(),
            "an offset behind the stream");
}

} // namespace
} // namespace quillmoth::markdown

int main(int argc, char** argv) {
    using namespace quillmoth::markdown;
    const std::uint64_t count = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 1000;
    const std::uint64_t first = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 0;
    for (std::uint64_t number = first; number < first + count; ++number) {
        const std::string text = makeInput(number);
        Random random(number);
        checkDocument(text, random);
        checkStream(text, random);
        if ((number - first) % 10000 == 9999) {
            std::printf("%llu inputs\n", static_cast<unsigned long long>(number - first + 1));
            std::fflush(stdout);
        }
    }
    return 0;
}
