#include "MarkdownUI/Layout/DocumentLayout.h"

#include "FixedTextEngine.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <map>
#include <sstream>

namespace quillmoth::markdown {
namespace {

std::vector<std::filesystem::path> sources() {
    std::vector<std::filesystem::path> result;
    for (const auto& entry : std::filesystem::directory_iterator(QUILLMOTH_MARKDOWN_GOLDENS)) {
        if (entry.path().extension() == ".md")
            result.push_back(entry.path());
    }
    std::ranges::sort(result);
    return result;
}

/// The words in the comment that the first line of a golden may be: "[//]: # (upperRoman center)".
std::vector<std::string> wordsOf(const std::string& text) {
    constexpr std::string_view kOpening = "[//]: # (";
    if (!text.starts_with(kOpening))
        return {};
    std::istringstream comment(text.substr(kOpening.size(), text.find(')') - kOpening.size()));
    return {std::istream_iterator<std::string>(comment), {}};
}

/// The theme and options of a golden: basic, but for what its words say.
struct Setting {
    Theme theme = Theme::basic();
    LayoutOptions options{.width = 400, .fontSize = 16, .imageBaseURL = "https://example.org/"};

    void apply(const std::string& word) {
        static const std::map<std::string, std::function<void(Setting&)>> kWords{
            {"dash", [](Setting& self) { self.theme.bulletedListMarker = markers::dash; }},
            {"disc", [](Setting& self) { self.theme.bulletedListMarker = markers::disc; }},
            {"circle", [](Setting& self) { self.theme.bulletedListMarker = markers::circle; }},
            {"square", [](Setting& self) { self.theme.bulletedListMarker = markers::square; }},
            {"upperRoman", [](Setting& self) { self.theme.numberedListMarker = markers::upperRoman; }},
            {"lowerRoman", [](Setting& self) { self.theme.numberedListMarker = markers::lowerRoman; }},
            {"light", [](Setting& self) { self.options.colorScheme = ColorScheme::light; }},
            {"center", [](Setting& self) { self.options.alignment = TextAlignment::center; }},
            {"trailing", [](Setting& self) { self.options.alignment = TextAlignment::trailing; }}};
        if (word.starts_with("width="))
            options.width = std::stod(word.substr(6));
        else if (word.starts_with("size="))
            options.fontSize = std::stod(word.substr(5));
        else
            kWords.at(word)(*this);
    }
};

std::string layoutOf(const std::string& text) {
    Setting setting;
    for (const std::string& word : wordsOf(text))
        setting.apply(word);
    FixedTextEngine engine;
    FixedImageSource images;
    images.sizes = {{"https://example.org/wide.png", {800, 200}}, {"https://example.org/icon.png", {40, 24}}};
    DocumentLayout layout(engine, images, setting.theme);
    layout.setOptions(setting.options);
    layout.setContent(MarkdownContent(text));
    layout.ensureLaidOut(1e9);
    EXPECT_TRUE(layout.isHeightExact());
    std::ostringstream height;
    height << "height " << layout.totalHeight() << "\n";
    return height.str() +
           describe(layout.displayList({0, 0, setting.options.width, layout.totalHeight() + 1}));
}

class Golden : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(Golden, lays_out_as_its_file_says) {
    std::filesystem::path expected = GetParam();
    expected.replace_extension(".layout");
    const std::string layout = layoutOf(test::contentOf(GetParam()));
    if (std::getenv("QUILLMOTH_REWRITE_GOLDENS") != nullptr) { // NOLINT(concurrency-mt-unsafe)
        std::ofstream(expected) << layout;
        return;
    }
    EXPECT_EQ(layout, test::contentOf(expected))
        << "If the new layout of " << GetParam().filename()
        << " is right, set QUILLMOTH_REWRITE_GOLDENS=1, run this test again, and read the change of "
        << expected.filename() << ".";
}

INSTANTIATE_TEST_SUITE_P(Documents, Golden, testing::ValuesIn(sources()),
                         [](const auto& info) { return info.param.stem().string(); });

} // namespace
} // namespace quillmoth::markdown
