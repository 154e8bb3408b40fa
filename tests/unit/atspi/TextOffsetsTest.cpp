#include "Platform/Linux/AtSpi/TextOffsets.h"

#include <gtest/gtest.h>

#include <string>

using namespace quillmoth::platform;

namespace {

// a, an emoji, e with a combining accent, alef: 5 code points, 6 UTF-16 units.
const std::string kMixed = "a\U0001F600e\u0301\u05D0";

} // namespace

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
}

TEST(TextOffsetsTest, everyLineBreakBecomesOneSpace) {
    EXPECT_EQ(flattenedLines("a\r\nb\nc\rd\u2028e\u2029f\u0085g"), "a b c d e f g");
    EXPECT_EQ(flattenedLines("\n\n"), "  ");
    EXPECT_EQ(flattenedLines("\u00E9\u2027"), "\u00E9\u2027") << "neighbours of the line separator stay";
}
