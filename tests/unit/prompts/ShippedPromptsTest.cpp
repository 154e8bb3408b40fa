#include "Quillmoth/Prompts/ExtractedText.h"
#include "Quillmoth/Prompts/PromptData.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <string_view>

namespace quillmoth {
namespace {

std::vector<PromptData> shippedPrompts() {
    std::ifstream file(QUILLMOTH_SHIPPED_PROMPTS);
    const std::string json{std::istreambuf_iterator<char>(file), {}};
    auto prompts = readPrompts(json);
    if (!prompts) {
        ADD_FAILURE() << prompts.error().description;
        return {};
    }
    return *prompts;
}

bool holds(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

bool isWellFormedBlank(const std::string& text) {
    const std::string words = text.size() > 2 ? text.substr(1, text.size() - 2) : "";
    return text.starts_with('[') && text.ends_with(']') && !holds(words, "[") &&
           words.find_first_not_of(" \n") != std::string::npos;
}

/// Each blank is "[" and some words and "]", without further brackets.
void expectWellFormedBlanks(const PromptData& prompt) {
    for (const ExtractedText& piece : extractBracketedTexts(prompt.prompt))
        EXPECT_TRUE(piece.isBracketed ? isWellFormedBlank(piece.text) : !holds(piece.text, "["))
            << prompt.name << ": " << piece.text;
}

/// RFC 9562, version 4, in capitals.
bool isRandomUUID(const std::string& text) {
    constexpr std::string_view kShape = "hhhhhhhh-hhhh-4hhh-vhhh-hhhhhhhhhhhh";
    return std::equal(text.begin(), text.end(), kShape.begin(), kShape.end(), [](char c, char shape) {
        constexpr std::string_view kDigits = "0123456789ABCDEF";
        constexpr std::string_view kVariants = "89AB";
        return shape == 'h'   ? kDigits.find(c) != std::string_view::npos
               : shape == 'v' ? kVariants.find(c) != std::string_view::npos
                              : c == shape;
    });
}

TEST(ShippedPrompts, AreManyAndDifferFromEachOtherInIDAndName) {
    const auto prompts = shippedPrompts();
    EXPECT_GE(prompts.size(), 26U);
    std::set<std::string> ids;
    std::set<std::string> names;
    for (const PromptData& prompt : prompts) {
        EXPECT_TRUE(isRandomUUID(prompt.id.value_or(""))) << prompt.name;
        EXPECT_TRUE(ids.insert(prompt.id.value_or("")).second) << prompt.name;
        EXPECT_TRUE(names.insert(prompt.name).second) << prompt.name;
        EXPECT_FALSE(prompt.name.empty() || prompt.emoji.empty() || prompt.prompt.empty());
        EXPECT_FALSE(prompt.systemPrompt.value_or("").empty()) << prompt.name;
    }
}

TEST(ShippedPrompts, OfTheContextClassTakeTheContextOnceAndHoldNoBrackets) {
    std::size_t count = 0;
    for (const PromptData& prompt : shippedPrompts()) {
        if (prompt.promptType != "context")
            continue;
        ++count;
        EXPECT_TRUE(prompt.prompt.ends_with("\n\n<text>\n{selected text}\n</text>")) << prompt.name;
        EXPECT_EQ(prompt.prompt.find("{selected text}"), prompt.prompt.rfind("{selected text}"));
        EXPECT_EQ(prompt.prompt.find_first_of("[]"), std::string::npos) << prompt.name;
    }
    EXPECT_GE(count, 12U);
}

TEST(ShippedPrompts, OfTheOtherClassTakeNoContextAndHaveWellFormedBlanks) {
    std::size_t withBlanks = 0;
    std::size_t withoutBlanks = 0;
    for (const PromptData& prompt : shippedPrompts()) {
        if (prompt.promptType == "context")
            continue;
        EXPECT_EQ(prompt.promptType, "nonContext") << prompt.name;
        EXPECT_FALSE(holds(prompt.prompt, "{selected text}")) << prompt.name;
        expectWellFormedBlanks(prompt);
        ++(holds(prompt.prompt, "[") ? withBlanks : withoutBlanks);
    }
    EXPECT_GE(withBlanks, 5U);
    EXPECT_GE(withoutBlanks, 1U);
}

} // namespace
} // namespace quillmoth
