// Others' documents: whatever the rules of the language allow is laid out, read and hit without a fault.

#include "Foundation/Text.h"

#include "DocumentCheck.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace quillmoth::markdown {
namespace {

/// Blocks of every kind, with inlines of every kind in them, and what is empty or unusual of each.
std::vector<std::string> blocksOfAllKinds() {
    std::string text = test::contentOf(QUILLMOTH_MARKDOWN_GOLDENS "/../examples.md");
    std::vector<std::string> blocks;
    for (std::size_t end = 0; !text.empty(); text.erase(0, end + 4)) {
        end = std::min(text.find("\n%%\n"), text.size() - 1);
        blocks.push_back(text.substr(0, end));
    }
    return blocks;
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
    const std::vector<std::string> blocks = blocksOfAllKinds();
    ASSERT_EQ(blocks.size(), 20U);
    std::uint64_t seed = 0;
    for (const Container& container : containers) {
        for (const std::string& above : blocks) {
            for (const std::string& below : blocks) {
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
