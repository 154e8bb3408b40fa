#include "MarkdownUI/Layout/DocumentLayout.h"

#include "FixedTextEngine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>

namespace quillmoth::markdown {
namespace {

std::string contentOf(const std::filesystem::path& path) {
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
        using ListMarkers = std::map<std::string, ListMarkerStyle>;
        static const ListMarkers kBullets{{"dash", markers::dash},
                                          {"disc", markers::disc},
                                          {"circle", markers::circle},
                                          {"square", markers::square}};
        static const ListMarkers kNumbers{{"upperRoman", markers::upperRoman},
                                          {"lowerRoman", markers::lowerRoman}};
        if (const auto bullet = kBullets.find(word); bullet != kBullets.end())
            theme.bulletedListMarker = bullet->second;
        else if (const auto number = kNumbers.find(word); number != kNumbers.end())
            theme.numberedListMarker = number->second;
        else if (word == "light")
            options.colorScheme = ColorScheme::light;
        else if (word == "center")
            options.alignment = TextAlignment::center;
        else if (word == "trailing")
            options.alignment = TextAlignment::trailing;
        else if (word.starts_with("width="))
            options.width = std::stod(word.substr(6));
        else if (word.starts_with("size="))
            options.fontSize = std::stod(word.substr(5));
        else
            ADD_FAILURE() << "no such word: " << word;
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
    const std::string layout = layoutOf(contentOf(GetParam()));
    if (std::getenv("QUILLMOTH_REWRITE_GOLDENS") != nullptr) { // NOLINT(concurrency-mt-unsafe)
        std::ofstream(expected) << layout;
        return;
    }
    EXPECT_EQ(layout, contentOf(expected))
        << "If the new layout of " << GetParam().filename()
        << " is right, set QUILLMOTH_REWRITE_GOLDENS=1, run this test again, and read the change of "
        << expected.filename() << ".";
}

INSTANTIATE_TEST_SUITE_P(Documents, Golden, testing::ValuesIn(sources()),
                         [](const auto& info) { return info.param.stem().string(); });

} // namespace
} // namespace quillmoth::markdown
