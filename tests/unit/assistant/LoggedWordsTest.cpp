#include "tests/unit/assistant/AssistantFixture.h"

namespace quillmoth {
namespace {

class LoggedWordsTest : public AssistantFixture {
protected:
    LoggedWordsTest() { platform.userDefaults.set("openapikey", std::string("sk-secret")); }

    /// Goes every way that a text takes: typed, with a context, asked again, refused by the service, stored.
    void writeSecrets() {
        makeModel({preset("Summary", "secret preset {selected text}")});
        converse("secret question", {"secret answer"});
        model->regenerate();
        serveData(200, piece("secret again"));
        model->archiveConversation();
        summary().answer(200, "no secret record");
        platform.runUntilIdle();
        startAnew();
        hold("secret context");
        ask("", 0);
        failToConnect("down");
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
