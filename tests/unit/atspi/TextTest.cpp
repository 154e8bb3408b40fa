#include "Foundation/Limits.h"
#include "Platform/Linux/AtSpi/TextDifference.h"
#include "Platform/Linux/AtSpi/TextOffsets.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

using namespace quillmoth::platform;

namespace {

// a, an emoji, e with a combining accent, alef: 5 code points, 6 UTF-16 units.
const std::string kMixed = "a\U0001F600e\u0301\u05D0";

std::string applied(const std::string& oldText, const std::string& newText, TextDifference difference) {
    return oldText.substr(0, difference.location) +
           newText.substr(difference.location, difference.newLength) +
           oldText.substr(difference.location + difference.oldLength);
}

} // namespace

TEST(TextRangeTest, ofASelectionIsAskedForNoMoreThanBecomesTheContext) {
    constexpr auto kMost = static_cast<std::int64_t>(quillmoth::limits::kSelection) + 1;
    EXPECT_EQ(withinSelectionLimit({.start = 5, .end = 9}), (TextRange{.start = 5, .end = 9}));
    EXPECT_EQ(withinSelectionLimit({.start = 5, .end = 2147483647}),
              (TextRange{.start = 5, .end = 5 + kMost}));
    EXPECT_EQ(withinSelectionLimit({.start = -2147483648, .end = 2147483647}),
              (TextRange{.start = -2147483648, .end = -2147483648 + kMost}));
}

TEST(TextDifferenceTest, isTheOneStretchThatDiffers) {
    const std::vector<std::tuple<std::string, std::string, TextDifference>> cases = {
        {"", "", {0, 0, 0}},
        {"same", "same", {4, 0, 0}},
        {"one two three", "one 2 three", {4, 3, 1}},
        {"start", "new start", {0, 0, 4}},
        {"end", "end!", {3, 0, 1}},
        {"gone", "", {0, 4, 0}},
        {"", "fresh", {0, 0, 5}},
        // Repeated characters: the common parts must not overlap.
        {"aaa", "aa", {0, 1, 0}},
        {"abab", "ababab", {0, 0, 2}},
        // Characters that share their first bytes, respectively their last ones, are not cut.
        {"x\u00E9y", "x\u00E8y", {1, 2, 2}},
        {"\U0001F600", "\U0001F601", {0, 4, 4}},
        {"\u00A9", "\u00E9", {0, 2, 2}},
    };
    for (const auto& [oldText, newText, expected] : cases) {
        const TextDifference difference = differenceBetween(oldText, newText);
        // Equal texts differ in nothing, wherever that is said to be.
        EXPECT_TRUE(difference == expected || (difference.empty() && expected.empty()))
            << oldText << " -> " << newText;
        EXPECT_EQ(applied(oldText, newText, difference), newText);
    }
}

TEST(TextDifferenceTest, leadsFromAnyTextToAnyOther) {
    const std::vector<std::string> alphabet = {"a",      "b",          "\u00E9",    "\u00E8",
                                               "\u05D0", "\U0001F600", "\U0001F601"};
    std::mt19937 random(7);
    const auto randomText = [&] {
        std::string text;
        for (std::size_t count = random() % 8; count > 0; --count)
            text += alphabet[random() % alphabet.size()];
        return text;
    };
    for (int round = 0; round < 5000; ++round) {
        const std::string oldText = randomText();
        const std::string newText = randomText();
        const TextDifference difference = differenceBetween(oldText, newText);
        ASSERT_EQ(applied(oldText, newText, difference), newText) << oldText;
        const auto isBoundary = [](const std::string& text, std::size_t place) {
            return place == text.size() || (static_cast<unsigned char>(text[place]) & 0xC0U) != 0x80U;
        };
        ASSERT_TRUE(isBoundary(oldText, difference.location));
        ASSERT_TRUE(isBoundary(oldText, difference.location + difference.oldLength));
        ASSERT_TRUE(isBoundary(newText, difference.location + difference.newLength));
    }
}

TEST(TextOffsetsTest, lengthsCountCodePointsOrUTF16Units) {
    EXPECT_EQ(lengthIn(OffsetUnit::codePoint, kMixed), 5);
    EXPECT_EQ(lengthIn(OffsetUnit::utf16, kMixed), 6);
    EXPECT_EQ(lengthIn(OffsetUnit::utf16, ""), 0);
}

TEST(TextOffsetsTest, theUnitIsToldByTheApplicationsOwnCount) {
    EXPECT_EQ(unitOfCount(kMixed, 5), OffsetUnit::codePoint);
    EXPECT_EQ(unitOfCount(kMixed, 6), OffsetUnit::utf16);
    EXPECT_EQ(unitOfCount(kMixed, 12), std::nullopt) << "a count that fits neither proves nothing";
    EXPECT_EQ(unitOfCount("plain", 5), std::nullopt) << "nor one that fits both";
}

TEST(TextOffsetsTest, offsetsConvertBothWaysAndStopAtTheEnd) {
    for (std::int64_t codePoint = 0; codePoint <= 5; ++codePoint) {
        const std::int64_t units =
            convertedOffset(kMixed, codePoint, OffsetUnit::codePoint, OffsetUnit::utf16);
        EXPECT_EQ(units, codePoint < 2 ? codePoint : codePoint + 1);
        EXPECT_EQ(convertedOffset(kMixed, units, OffsetUnit::utf16, OffsetUnit::codePoint), codePoint);
    }
    EXPECT_EQ(convertedOffset(kMixed, 2, OffsetUnit::utf16, OffsetUnit::codePoint), 1)
        << "within a surrogate pair: its start";
    EXPECT_EQ(convertedOffset(kMixed, 99, OffsetUnit::codePoint, OffsetUnit::utf16), 6);
    EXPECT_EQ(convertedOffset(kMixed, 99, OffsetUnit::utf16, OffsetUnit::utf16), 6);
    EXPECT_EQ(convertedOffset(kMixed, -3, OffsetUnit::utf16, OffsetUnit::codePoint), 0);
    EXPECT_EQ(byteOffset(kMixed, 3, OffsetUnit::utf16), 5U);
}

TEST(TextOffsetsTest, onlyFillersBehindWideCharactersAreTakenOut) {
    EXPECT_EQ(withoutFillers("\U0001F600\uFEFFa\U0001F601\uFEFF"), "\U0001F600a\U0001F601");
    EXPECT_EQ(withoutFillers("\uFEFFmarked \u05D0\uFEFF"), "\uFEFFmarked \u05D0\uFEFF")
        << "one that stands elsewhere is the user's";
    EXPECT_EQ(withoutFillers("\U0001F600\uFEFF\uFEFF"), "\U0001F600\uFEFF");
}

TEST(TextOffsetsTest, aSelectionConvertedTwiceIsRepairedWithTheCaret) {
    // "word" behind an emoji is at 3..7; converted once more it is reported at 2..6.
    const std::string text = "\U0001F600, word, more";
    EXPECT_EQ(repairedRange(text, {2, 6}, 7), (TextRange{3, 7}));
    EXPECT_EQ(repairedRange(text, {2, 6}, 3), (TextRange{3, 7})) << "at either end";
    EXPECT_EQ(repairedRange(text, {3, 7}, 7), (TextRange{3, 7})) << "as reported where that meets the caret";
    EXPECT_EQ(repairedRange("no emoji", {3, 8}, 0), (TextRange{3, 8})) << "nothing to convert twice";
}

TEST(TextOffsetsTest, aSelectionThatCannotBeToldForCertainIsNone) {
    const std::string text = "\U0001F600, word, more";
    EXPECT_EQ(repairedRange(text, {2, 6}, 12), std::nullopt) << "the caret is elsewhere";
    EXPECT_EQ(repairedRange(text, {2, 3}, 3), std::nullopt) << "both readings meet the caret";
    EXPECT_EQ(repairedRange(text, {1, 5}, 6), std::nullopt) << "directly behind the emoji";
    EXPECT_EQ(repairedRange(text, {2, 99}, 99), std::nullopt) << "beyond the end of the text";
}

TEST(TextOffsetsTest, everyLineBreakBecomesOneSpace) {
    EXPECT_EQ(flattenedLines("a\r\nb\nc\rd\u2028e\u2029f\u0085g"), "a b c d e f g");
    EXPECT_EQ(flattenedLines("\n\n"), "  ");
    EXPECT_EQ(flattenedLines("\u00E9\u2027"), "\u00E9\u2027") << "neighbours of the line separator stay";
}
