#include "Quillmoth/Assistant/PresetFilter.h"

#include "Foundation/Text.h"
#include "tests/unit/assistant/AssistantFixture.h"

#include <random>

namespace quillmoth {
namespace {

TEST(PresetFilter, FindsWhatComparingEachNameFinds) {
    const char* const letters[] = {"a", "B", "`", "{", "c", " ", "ß", "é", "e\u0301", "🦋", "ﬁ", "\xFF"};
    std::mt19937 random(20261122); // NOLINT(cert-msc51-cpp): the same cases in each run
    const auto word = [&](std::size_t longest) {
        std::string text;
        for (auto length = random() % (longest + 1); length > 0; --length)
            text += letters[random() % std::size(letters)];
        return text;
    };
    for (int round = 0; round < 300; ++round) {
        std::vector<PromptData> prompts;
        for (auto count = random() % 40; count > 0; --count)
            prompts.push_back(preset(word(30), "", random() % 3 == 0 ? "nonContext" : "context"));
        PresetFilter filter;
        for (int search = 0; search < 20; ++search) {
            const std::string wanted = word(4);
            Rows expected;
            for (std::size_t i = 0; i < prompts.size(); ++i)
                if (prompts[i].promptType == "context" &&
                    uppercased(prompts[i].name).find(uppercased(wanted)) != std::string::npos)
                    expected.push_back(static_cast<std::int64_t>(i));
            ASSERT_EQ(filter.matching(prompts, wanted, true), expected) << wanted;
        }
    }
}

} // namespace
} // namespace quillmoth
