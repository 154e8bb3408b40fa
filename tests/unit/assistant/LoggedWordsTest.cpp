#include "tests/unit/assistant/AssistantFixture.h"

#include <algorithm>

namespace quillmoth {
namespace {

class LoggedWordsTest : public AssistantFixture {
protected:
    LoggedWordsTest() {
        unsetenv("QUILLMOTH_OPENAI_BASE_URL");
        unsetenv("QUILLMOTH_LOG");
        platform.userDefaults.set("openapikey", std::string("sk-secret"));
    }

    ~LoggedWordsTest() override { unsetenv("QUILLMOTH_LOG"); }

    /// Goes every way that a text takes: typed, with a context, asked again, refused by the service, stored.
    void writeSecrets() {
        makeModel({preset("Summary", "secret preset {selected text}")});
        converse("secret question", {"secret answer"});
        model->regenerate();
        serve(200, {"secret again"});
        model->archiveConversation();
        summary().answer(200, "no secret record");
        platform.runUntilIdle();
        startAnew();
        hold("secret context");
        ask("", 0);
        failToConnect("down");
    }

    bool logged(const std::string& words) {
        return std::any_of(lines.begin(), lines.end(),
                           [&](const std::string& line) { return line.find(words) != std::string::npos; });
    }
};

TEST_F(LoggedWordsTest, nothing_that_the_user_wrote_or_got_is_logged) {
    for (const char* setting : {"", "info"}) {
        setenv("QUILLMOTH_LOG", setting, 1);
        writeSecrets();
        EXPECT_FALSE(logged("secret"));
        EXPECT_TRUE(logged("Unexpected saving error: "));
    }
}

TEST_F(LoggedWordsTest, the_words_are_there_where_they_are_asked_for_and_the_key_is_not) {
    setenv("QUILLMOTH_LOG", "debug", 1);
    writeSecrets();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "prompt secret question"), 1);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "secret preset {selected text}"), 1);
    EXPECT_EQ(
        std::count(lines.begin(), lines.end(), "[system: Your are helpful assistant, user: secret question]"),
        1);
    EXPECT_FALSE(logged("sk-secret"));
}

} // namespace
} // namespace quillmoth
