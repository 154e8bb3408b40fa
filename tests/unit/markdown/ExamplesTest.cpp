// Others' documents: whatever the rules of the language allow is laid out, read and hit without a fault.

#include "Foundation/Text.h"

#include "DocumentCheck.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace quillmoth::markdown {
namespace {

namespace fs = std::filesystem;

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

void expectNoFault(const std::string& text, std::uint64_t seed) {
    EXPECT_EQ(faultOfDocument(text, seed), "") << text;
    EXPECT_EQ(faultOfLaziness(text, seed), "") << text;
}

TEST(Examples, any_block_below_any_other_is_laid_out_without_a_fault_in_any_container) {
    const std::vector<Container> containers{
        {"", ""},         {"> ", "> "},       {"- ", "  "},        {"10. ", "    "},
        {"* [ ] ", "  "}, {"> 1. ", ">    "}, {"- > - ", "  >   "}};
    std::uint64_t seed = 0;
    for (const Container& container : containers) {
        for (const std::string& above : blocksOfAllKinds()) {
            for (const std::string& below : blocksOfAllKinds()) {
                expectNoFault(container.around(above + "\n\n" + below), ++seed);
                if (testing::Test::HasFailure())
                    return;
            }
        }
    }
}

TEST(Examples, read_me_files_of_installed_packages_are_laid_out_without_a_fault) {
    constexpr std::uintmax_t kMostBytes = 400'000; // of all; so that the test stays quick
    std::vector<fs::path> files;
    std::error_code error;
    for (fs::recursive_directory_iterator entry("/usr/share/doc", error), end; !error && entry != end;
         entry.increment(error)) {
        if (entry->path().filename().string().starts_with("README") && entry->path().extension() != ".gz" &&
            entry->is_regular_file(error))
            files.push_back(entry->path());
    }
    if (files.empty())
        GTEST_SKIP() << "no package has a README";
    std::ranges::sort(files);
    std::uintmax_t bytes = 0;
    for (const fs::path& path : files) {
        std::ostringstream content;
        content << std::ifstream(path, std::ios::binary).rdbuf();
        const std::string text = content.str();
        bytes += text.size();
        if (bytes > kMostBytes)
            break;
        expectNoFault(text, text.size());
        EXPECT_EQ(faultOfStream(text, text.size()), "") << path;
    }
}

} // namespace
} // namespace quillmoth::markdown
