#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "FixedTextEngine.h"
#include "MarkdownUI/DocumentLayout.h"

namespace quillmoth::markdown {
namespace {

std::string readFile(const std::filesystem::path& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

std::vector<std::filesystem::path> sources() {
    std::vector<std::filesystem::path> result;
    for (const auto& entry : std::filesystem::directory_iterator(QUILLMOTH_MARKDOWN_GOLDENS)) {
        if (entry.path().extension() == ".md")
            result.push_back(entry.path());
    }
    std::ranges::sort(result);
    return result;
}

/// The theme of a golden: basic, with the numbered marker style that its first line names in a comment.
Theme themeFor(const std::string& text) {
    Theme theme = Theme::basic();
    if (text.starts_with("[//]: # (upperRoman)"))
        theme.numberedListMarker = markers::upperRoman;
    if (text.starts_with("[//]: # (lowerRoman)"))
        theme.numberedListMarker = markers::lowerRoman;
    if (text.starts_with("[//]: # (dash)"))
        theme.bulletedListMarker = markers::dash;
    return theme;
}

std::string layoutOf(const std::string& text) {
    FixedTextEngine engine;
    FixedImageSource images;
    images.sizes = {{"https://example.org/wide.png", {800, 200}}, {"https://example.org/icon.png", {40, 24}}};
    const Theme theme = themeFor(text);
    DocumentLayout layout(engine, images, theme);
    layout.setOptions({.width = 400, .fontSize = 16, .imageBaseURL = "https://example.org/"});
    layout.setContent(MarkdownContent(text));
    layout.ensureLaidOut(1e9);
    EXPECT_TRUE(layout.isHeightExact());
    std::ostringstream height;
    height << "height " << layout.totalHeight() << "\n";
    return height.str() + describe(layout.displayList({0, 0, 400, layout.totalHeight() + 1}));
}

class Golden : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(Golden, lays_out_as_its_file_says) {
    std::filesystem::path expected = GetParam();
    expected.replace_extension(".layout");
    const std::string layout = layoutOf(readFile(GetParam()));
    if (std::getenv("QUILLMOTH_REWRITE_GOLDENS") != nullptr) { // NOLINT(concurrency-mt-unsafe)
        std::ofstream(expected) << layout;
        return;
    }
    EXPECT_EQ(layout, readFile(expected))
        << "If the new layout of " << GetParam().filename()
        << " is right, set QUILLMOTH_REWRITE_GOLDENS=1, run this test again, and read the change of "
        << expected.filename() << ".";
}

INSTANTIATE_TEST_SUITE_P(Documents, Golden, testing::ValuesIn(sources()),
                         [](const auto& info) { return info.param.stem().string(); });

} // namespace
} // namespace quillmoth::markdown
