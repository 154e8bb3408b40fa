// Others' documents: whatever the rules of the language allow is laid out, read and hit without a fault.

#include "Foundation/Text.h"

#include "DocumentCheck.h"

#include <gtest/gtest.h>

namespace quillmoth::markdown {
namespace {

/// Blocks of every kind, with inlines of every kind in them, and what is empty or unusual of each.
const std::vector<std::string>& blocksOfAllKinds() {
    static const std::vector<std::string> texts{
        "words *and **more*** `code` ~~gone~~ <b>raw</b>  \nin [a *link*](u 't') and ![an](icon.png) image",
        "\u05D0\u05D1 latin \u05D2 \U0001F916 \u4E16\u754C",
        "![alone](icon.png)",
        "[![linked](icon.png)](u) ![dark](icon.png#gh-dark-mode-only)\\\n![missing](none)",
        "# Heading `of` [level](u) one",
        "######",
        "Set apart\nby a line\n===",
        "---",
        "```swift\nlet code = 1\n\n\n```",
        "~~~\n~~~",
        "\tindented\n\n\tcode",
        "<div>\n*raw*\n</div>",
        "<!-- one\n\ntwo -->",
        "|a|*b*||\n|:-|:-:|-:|\n|![i](icon.png)|`c|d`|e|\n|f",
        "|only a header|\n|-|",
        "- one\n- two\n  - inner\n-",
        "3. one\n\n   more\n\n4. two",
        "- [x] done\n- plain",
        "> quoted\nlazily\n> > deeper",
        "[defined]: u 'nothing to see'",
    };
    return texts;
}

/// Puts a block into a container, by what stands before its first line and before the others.
struct Container {
    std::string first;
    std::string others;

    [[nodiscard]] std::string around(const std::string& text) const {
        return first + replacingAll(text, "\n", "\n" + others);
    }
};

TEST(Examples, any_block_below_any_other_is_laid_out_without_a_fault_in_any_container) {
    const std::vector<Container> containers{
        {"", ""},         {"> ", "> "},       {"- ", "  "},        {"10. ", "    "},
        {"* [ ] ", "  "}, {"> 1. ", ">    "}, {"- > - ", "  >   "}};
    std::uint64_t seed = 0;
    for (const Container& container : containers) {
        for (const std::string& above : blocksOfAllKinds()) {
            for (const std::string& below : blocksOfAllKinds()) {
                const std::string text = container.around(above + "\n\n" + below);
                ASSERT_EQ(faultOfDocument(text, ++seed), "") << text;
                ASSERT_EQ(faultOfLaziness(text, seed), "") << text;
                ASSERT_EQ(faultOfStream(text, seed), "") << text;
            }
        }
    }
}

} // namespace
} // namespace quillmoth::markdown
