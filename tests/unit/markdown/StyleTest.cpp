#include "MarkdownUI/Document/MarkdownContent.h"
#include "MarkdownUI/Layout/FlowLayout.h"
#include "MarkdownUI/Layout/HeightIndex.h"
#include "MarkdownUI/Style/InlineRendering.h"
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
    struct Case {
        std::vector<AnyTextStyle> styles;
        double size;
        double scale;
        double scaledSize;
    };

    const auto em = [](double value) { return FontSize{RelativeSize::em(value)}; };
    const auto rem = [](double value) { return FontSize{RelativeSize::rem(value)}; };
    const std::vector<Case> cases{
        {{}, 13, 1, 13},
        {{em(2), em(0.94)}, 13, 1.88, 24},
        {{em(2), FontSize{20.0}}, 20, 1, 20},
        {{em(2), rem(1.5)}, 13, 1.5, 20},
        {{FontSize{16.0}, em(0.83)}, 16, 0.83, 13},
        {{FontSize{5.0}, em(0.5)}, 5, 0.5, 3}, // halves away from zero
    };
    for (const Case& c : cases) {
        const FontProperties font = fontAfter(c.styles);
        EXPECT_DOUBLE_EQ(font.size, c.size);
        EXPECT_DOUBLE_EQ(font.scale, c.scale);
        EXPECT_DOUBLE_EQ(font.scaledSize(), c.scaledSize);
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

TEST(InlineRendering, nesting_compounds_and_images_inside_are_dropped) {
    const MarkdownContent content("***a `b`*** [c](d) [e](<f g>) *![h](i)*");
    const auto& values = content.blocks[0].get<blocks::Paragraph>()->text;
    const AttributedText text =
        inlinesToText(values, InlineEnvironment("https://x.org/y", Theme::basic()), withFont(), {});
    EXPECT_EQ(text.text(), "a b c e ");
    ASSERT_GE(text.runs().size(), 5U);
    const Font& both = *text.runs()[0].attributes->font;
    EXPECT_TRUE(both.isItalic);
    EXPECT_EQ(both.weight, FontProperties::Weight::semibold);
    const Font& code = *text.runs()[1].attributes->font;
    EXPECT_TRUE(code.isMonospaced && code.isItalic);
    EXPECT_EQ(code.size, 12);
    EXPECT_EQ(text.runAt(4)->attributes->link, "https://x.org/d");
    EXPECT_EQ(text.runAt(6)->attributes->link, std::nullopt) << "a destination that is no URL gives no link";
    EXPECT_FALSE(text.runs()[0].attributes->fontProperties) << "fonts are realized";
}

TEST(ListMarker, numerals) {
    const std::vector<std::pair<std::int64_t, std::string>> cases{
        {1, "I"},    {4, "IV"},         {9, "IX"},           {14, "XIV"},    {40, "XL"}, {90, "XC"},
        {400, "CD"}, {1994, "MCMXCIV"}, {3999, "MMMCMXCIX"}, {4000, "4000"}, {0, "0"},   {-3, "-3"}};
    for (const auto& [number, numeral] : cases)
        EXPECT_EQ(romanNumeral(number), numeral);
}

TEST(BlockMargin, margins_collapse_to_the_larger) {
    const BlockMargin none;
    const BlockMargin paragraph{0, 13};
    const BlockMargin heading{20, 13};
    EXPECT_EQ(spaceBetween(paragraph, paragraph, false), 13);
    EXPECT_EQ(spaceBetween(paragraph, heading, false), 20);
    EXPECT_EQ(spaceBetween(paragraph, paragraph, true), 0);
    EXPECT_EQ(spaceBetween(heading, heading, true), 20);
    EXPECT_EQ(spaceBetween(none, none, false), kDefaultPadding);
    EXPECT_EQ(spaceBetween(none, paragraph, false), 0);
    EXPECT_EQ(spaceBetween(paragraph, none, true), 0);
    EXPECT_EQ(combined(none, paragraph), paragraph);
    EXPECT_EQ(combined(heading, paragraph), heading);
}

TEST(FlowLayout, rows_are_filled_and_things_stand_on_their_bottom) {
    FlowLayout flow(4, 4, 100);
    const auto fixed = [](double width, double height) {
        return [=](double /*left*/) { return Size{width, height}; };
    };
    flow.add(fixed(48, 10));
    flow.add(fixed(48, 20)); // just fits
    flow.add(fixed(10, 10)); // does not
    flow.addSpacer();
    flow.add(fixed(10, 30));
    flow.add([](double left) { return Size{std::min(200.0, left), 5}; }); // shrinks to a row of its own
    EXPECT_EQ(flow.frames(),
              (std::vector<Rect>{
                  {0, 10, 48, 10}, {52, 0, 48, 20}, {0, 24, 10, 10}, {0, 38, 10, 30}, {0, 72, 100, 5}}));
    EXPECT_EQ(flow.size(), (Size{100, 77}));
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
