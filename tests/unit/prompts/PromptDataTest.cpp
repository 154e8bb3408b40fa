#include "Quillmoth/Prompts/PromptData.h"

#include <gtest/gtest.h>

namespace quillmoth {
namespace {

TEST(PromptDataJSON, WritesTheKeysInOrderAndLeavesOutWhatIsAbsent) {
    const PromptData full{.id = "I",
                          .emoji = "🪶",
                          .name = "n",
                          .prompt = "p",
                          .systemPrompt = "s",
                          .promptType = "other",
                          .programType = "g"};
    PromptData sparse;
    sparse.name = "n";
    const auto json = writeJSON(std::vector{full, sparse});
    ASSERT_TRUE(json);
    EXPECT_EQ(*json,
              R"([{"id":"I","emoji":"🪶","name":"n","prompt":"p","systemPrompt":"s","promptType":"other",)"
              R"("programType":"g"},{"emoji":"","name":"n","prompt":""}])");
    EXPECT_EQ(*readPrompts(*json), (std::vector{full, sparse}));
}

TEST(PromptDataJSON, NullIsAbsentAndOneDamagedPresetFailsTheWholeArray) {
    const auto read =
        readPromptData(R"({"id":null,"emoji":"e","name":"n","prompt":"p","promptType":null,"x":1})");
    ASSERT_TRUE(read);
    EXPECT_EQ(read->name, "n");
    EXPECT_FALSE(read->id || read->promptType);
    EXPECT_FALSE(readPrompts(R"([{"emoji":"e","name":"n","prompt":"p"},{"emoji":"e","name":"n"}])"));
    EXPECT_FALSE(readPrompts(R"([{"emoji":null,"name":"n","prompt":"p"}])"));
    EXPECT_FALSE(readPrompts(R"({"emoji":"e","name":"n","prompt":"p"})"));
}

TEST(PromptDataJSON, AFileWithAByteOrderMarkReads) {
    EXPECT_TRUE(readPrompts("\xEF\xBB\xBF[]"));
}

} // namespace
} // namespace quillmoth
