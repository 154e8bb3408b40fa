#include "Platform/Linux/AtSpi/TextDifference.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

using namespace quillmoth::platform;

namespace {

std::string applied(const std::string& oldText, const std::string& newText, TextDifference difference) {
    return oldText.substr(0, difference.location) +
           newText.substr(difference.location, difference.newLength) +
           oldText.substr(difference.location + difference.oldLength);
}

} // namespace

TEST(TextDifferenceTest, isTheOneStretchThatDiffers) {
    struct Case {
        std::string oldText;
        std::string newText;
        TextDifference expected;
    };

    const std::vector<Case> cases = {
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
    };
    for (const Case& each : cases) {
        const TextDifference difference = differenceBetween(each.oldText, each.newText);
        // Equal texts differ in nothing, wherever that is said to be.
        if (each.expected.empty())
            EXPECT_TRUE(difference.empty()) << each.oldText;
        else
            EXPECT_EQ(difference, each.expected) << each.oldText << " -> " << each.newText;
        EXPECT_EQ(applied(each.oldText, each.newText, difference), each.newText);
    }
}

TEST(TextDifferenceTest, neverCutsACharacter) {
    // Both pairs share their first bytes, respectively their last ones.
    EXPECT_EQ(differenceBetween("x\u00E9y", "x\u00E8y"), (TextDifference{1, 2, 2}));
    EXPECT_EQ(differenceBetween("\U0001F600", "\U0001F601"), (TextDifference{0, 4, 4}));
    EXPECT_EQ(differenceBetween("\u00A9", "\u00E9"), (TextDifference{0, 2, 2}));
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
