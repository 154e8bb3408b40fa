#include "Quillmoth/Prompts/ExtractedText.h"
#include "Quillmoth/Prompts/PromptData.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <string_view>

namespace quillmoth {
namespace {

std::vector<PromptData> shippedPrompts() {
    auto prompts = readPrompts(test::contentOf(QUILLMOTH_SHIPPED_PROMPTS));
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

TEST(ShippedPrompts, AreManyAndDifferFromEachOtherInIDAndName) {
    const auto prompts = shippedPrompts();
    EXPECT_GE(prompts.size(), 26U);
    const std::regex randomUUID("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
    std::set<std::string> ids;
    std::set<std::string> names;
    for (const PromptData& prompt : prompts) {
        EXPECT_TRUE(std::regex_match(prompt.id.value_or(""), randomUUID)) << prompt.name;
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
