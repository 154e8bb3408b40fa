#include "MarkdownUI/Layout/HeightIndex.h"
#include "MarkdownUI/Style/AttributedText.h"
#include "MarkdownUI/Style/TextStyleBuilder.h"
#include "MarkdownUI/Style/Theme.h"

#include <gtest/gtest.h>

namespace quillmoth::markdown {
namespace {

AttributeContainer withFont() {
    return TextStyleAttributesReader{FontProperties{}}.read();
}

FontProperties fontAfter(const std::vector<AnyTextStyle>& styles) {
    AttributeContainer bag = withFont();
    for (const AnyTextStyle& style : styles)
        style._collectAttributes(bag);
    return *bag.fontProperties;
}

TEST(TextStyle, font_sizes_set_multiply_or_replace_the_scale) {
    const auto em = [](double value) { return FontSize{RelativeSize::em(value)}; };
    const auto rem = [](double value) { return FontSize{RelativeSize::rem(value)}; };
    const std::vector<std::tuple<std::vector<AnyTextStyle>, double, double, double>> cases{
        {{}, 13, 1, 13},
        {{em(2), em(0.94)}, 13, 1.88, 24},
        {{em(2), FontSize{20.0}}, 20, 1, 20},
        {{em(2), rem(1.5)}, 13, 1.5, 20},
        {{FontSize{16.0}, em(0.83)}, 16, 0.83, 13},
        {{FontSize{5.0}, em(0.5)}, 5, 0.5, 3}, // halves away from zero
    };
    for (const auto& [styles, size, scale, scaledSize] : cases) {
        const FontProperties font = fontAfter(styles);
        EXPECT_DOUBLE_EQ(font.size, size);
        EXPECT_DOUBLE_EQ(font.scale, scale);
        EXPECT_DOUBLE_EQ(font.scaledSize(), scaledSize);
    }
}

TEST(TextStyle, without_font_properties_only_other_attributes_change) {
    AttributeContainer bag;
    for (const AnyTextStyle& style : std::vector<AnyTextStyle>{
             FontSize{20.0}, FontWeight{FontProperties::Weight::bold},
             FontStyle{FontProperties::Style::italic}, FontFamily{std::string("Serif")},
             FontFamilyVariant{FontProperties::FamilyVariant::monospaced},
             FontCapsVariant{FontProperties::CapsVariant::smallCaps},
             FontDigitVariant{FontProperties::DigitVariant::monospaced}, EmptyTextStyle{}})
        style._collectAttributes(bag);
    EXPECT_EQ(bag, AttributeContainer{});
    ForegroundColor{Color(SemanticColor::accent)}._collectAttributes(bag);
    TextKerning{2.0}._collectAttributes(bag);
    EXPECT_EQ(bag.foregroundColor, Color(SemanticColor::accent));
    EXPECT_EQ(bag.kern, 2.0);
    ForegroundColor{std::nullopt}._collectAttributes(bag);
    EXPECT_EQ(bag.foregroundColor, std::nullopt);
}

TEST(TextStyle, the_inner_style_wins) {
    const AnyTextStyle both = markdownTextStyle(
        markdownTextStyle(FontWeight{FontProperties::Weight::bold}, FontStyle{FontProperties::Style::italic}),
        FontWeight{FontProperties::Weight::light});
    const FontProperties font = *collecting(both, withFont()).fontProperties;
    EXPECT_EQ(font.weight, FontProperties::Weight::light);
    EXPECT_EQ(font.style, FontProperties::Style::italic);

    using Either = TextStyleBuilder::_Conditional<EmptyTextStyle, FontSize>;
    EXPECT_EQ(fontAfter({Either{FontSize{20.0}}}).size, 20);
    EXPECT_EQ(fontAfter({Either{EmptyTextStyle{}}}).size, 13);
    EXPECT_EQ(fontAfter({TextStyleBuilder::Optional<FontSize>{}}).size, 13);
}

TEST(TextStyle, every_font_property_reaches_the_font) {
    FontProperties properties{.family = std::string("Mono"),
                              .familyVariant = FontProperties::FamilyVariant::monospaced,
                              .capsVariant = FontProperties::CapsVariant::smallCaps,
                              .digitVariant = FontProperties::DigitVariant::monospaced,
                              .style = FontProperties::Style::italic,
                              .weight = FontProperties::Weight::semibold,
                              .size = 16,
                              .scale = 0.94};
    const Font font = makeFont(properties);
    EXPECT_EQ(font, (Font{.family = std::string("Mono"),
                          .size = 15,
                          .weight = FontProperties::Weight::semibold,
                          .caps = FontProperties::CapsVariant::smallCaps,
                          .isMonospaced = true,
                          .hasMonospacedDigits = true,
                          .isItalic = true}));
    EXPECT_NE(hashValue(properties), hashValue(FontProperties{}));
}

TEST(AttributedText, runs_cover_the_text_and_neighbours_differ) {
    AttributeContainer red;
    red.foregroundColor = Color::fromHex(0xFF0000);
    AttributedText text("a", {});
    text.append("b", {});
    ASSERT_EQ(text.runs().size(), 1U);
    text.append("cd", red);
    text.append("ef", {});
    ASSERT_EQ(text.runs().size(), 3U);
    EXPECT_EQ(text.textOf(text.runs()[1]), "cd");
    EXPECT_EQ(text.runAt(3), &text.runs()[1]);
    EXPECT_EQ(text.runAt(4), &text.runs()[2]);
    EXPECT_EQ(text.runAt(6), nullptr);
    EXPECT_EQ(text.substring(3, 5).runs().size(), 2U);
    EXPECT_EQ(text.substring(6, 6), AttributedText());
    text.editAttributes([](AttributeContainer& attributes) { attributes.foregroundColor.reset(); });
    EXPECT_EQ(text, AttributedText("abcdef", {}));
}

TEST(ListMarker, numerals) {
    const std::vector<std::pair<std::int64_t, std::string>> cases{
        {1, "I"},    {4, "IV"},         {9, "IX"},           {14, "XIV"},    {40, "XL"}, {90, "XC"},
        {400, "CD"}, {1994, "MCMXCIV"}, {3999, "MMMCMXCIX"}, {4000, "4000"}, {0, "0"},   {-3, "-3"}};
    for (const auto& [number, numeral] : cases)
        EXPECT_EQ(romanNumeral(number), numeral);
}

TEST(BlockMargin, blocks_that_say_nothing_of_their_margins_have_the_usual_space_between_them) {
    EXPECT_EQ(spaceBetween({}, {}, false), kDefaultPadding);
    EXPECT_EQ(spaceBetween({}, {0, 13}, false), 0);
    EXPECT_EQ(spaceBetween({20, 13}, {}, true), 0);
}

TEST(HeightIndex, finds_by_height_after_changes) {
    HeightIndex index;
    EXPECT_EQ(index.find(5), 0U);
    index.assign({10, 0, 20, 30, 40});
    index.set(2, 5);
    index.set(4, 1);
    EXPECT_EQ(index.top(3), 15);
    const std::vector<std::pair<double, std::size_t>> cases{{-5, 0}, {0, 0},  {9.9, 0}, {10, 2},
                                                            {15, 3}, {45, 4}, {46, 4},  {1e9, 4}};
    for (const auto& [y, expected] : cases)
        EXPECT_EQ(index.find(y), expected) << y;
}

} // namespace
} // namespace quillmoth::markdown
