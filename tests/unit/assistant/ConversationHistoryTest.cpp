#include "Foundation/Limits.h"
#include "tests/unit/assistant/AssistantFixture.h"

namespace quillmoth {
namespace {

std::string response(const std::string& topic) {
    return R"({"id":"1","object":"o","created":1,"model":"m","usage":{},"choices":[{"index":0,"message":)"
           R"({"role":"assistant","content":")" +
           topic + "\"}}]}";
}

class ConversationHistoryTest : public AssistantFixture {
protected:
    void closeConversation(const std::string& topic) {
        model->dismissStep();
        summary().answer(200, response(topic));
        platform.runUntilIdle();
    }

    Texts topics() const {
        Texts result;
        for (const auto& each : *model->_oldMessages)
            result.push_back(each.topic);
        return result;
    }

    auto storedInFile() {
        return *readOldMessages(platform.documents.content(DataModel::kHistoryFilename), platform.uuidSource);
    }
};

TEST_F(ConversationHistoryTest, a_closed_conversation_is_summarised_and_stored_first) {
    platform.userDefaults.set("model", std::string("gpt-4"));
    converse("one", "1");
    closeConversation("🌍 One");
    const auto body = readChatBody(*summary().request().httpBody, platform.uuidSource);
    EXPECT_EQ(body->model, "gpt-4");
    EXPECT_EQ(body->stream, false);
    ASSERT_EQ(body->messages.size(), 4U);
    EXPECT_EQ(body->messages.back().role, "user");
    EXPECT_EQ(body->messages.back().content.size(), 261U);
    converse("two", "2");
    closeConversation(" 🌍 Two\\n");
    EXPECT_EQ(topics(), (Texts{" 🌍 Two\n", "🌍 One"}));
    EXPECT_EQ(model->_oldMessages->front().message.size(), 3U) << "the request for the topic is not stored";
    EXPECT_EQ(model->_oldMessages->front().created, platform.clock.now);
    ASSERT_EQ(storedInFile().size(), 2U);
    EXPECT_TRUE(storedInFile().front().message.front().id) << "which the views tell the messages apart by";
    const std::string file = platform.documents.content(DataModel::kHistoryFilename);
    EXPECT_TRUE(file.starts_with(R"([{"topic":" 🌍 Two\n","message":[{"role":"system","content":)")) << file;
}

TEST_F(ConversationHistoryTest, a_reopened_conversation_keeps_its_place_and_its_date) {
    store({"A", "B", "C"});
    const double created = model->_oldMessages->at(2).created;
    openStored(2);
    platform.clock.now += 60;
    model->_messages.mutate([](auto& messages) {
        messages.push_back({.id = "2", .role = "assistant", .content = "a"});
        messages.push_back({.id = "3", .role = "user", .content = "b"});
    });
    converse("more", "answer");
    closeConversation("A again");
    EXPECT_EQ(topics(), (Texts{"C", "B", "A again"}));
    EXPECT_EQ(model->_oldMessages->at(2).message.back().content, "answer");
    EXPECT_EQ(model->_oldMessages->at(2).created, created);
    EXPECT_EQ(model->_chatWithHistory, -1);
    EXPECT_THROW(model->storeConversation("T", {}, 3), FatalFault);
    model->_oldMessages = std::vector<oldMessagesStruct>();
    EXPECT_THROW(model->storeConversation("T", {}, 0), FatalFault);
}

TEST_F(ConversationHistoryTest, an_answer_that_is_no_record_or_too_long_gives_a_topic_with_the_date) {
    const platform::URLError tooLong{platform::URLError::Code::tooLarge, "!"};
    for (const char* body : {"not valid JSON", R"({"error":{"message":"invalid key"}})", ""}) {
        SCOPED_TRACE(body);
        lines.clear();
        converse("one", "1");
        model->dismissStep();
        EXPECT_EQ(summary().request().largestAnswer, limits::kTopicAnswer);
        if (*body == '\0')
            summary().answer(std::nullopt, std::nullopt, tooLong);
        else
            summary().answer(401, body);
        platform.runUntilIdle();
        EXPECT_EQ(model->_oldMessages->front().topic, "😀 Chat: 2023-11-14 22:13");
        EXPECT_TRUE(logged("Unexpected saving error: "));
    }
}

TEST_F(ConversationHistoryTest, without_an_answer_nothing_is_stored) {
    for (const auto& error : {std::optional(platform::URLError{{}, "down"}), {}}) {
        converse("one", "1");
        lines.clear();
        model->dismissStep();
        summary().answer(std::nullopt, std::nullopt, error);
        platform.runUntilIdle();
        EXPECT_TRUE(model->_oldMessages->empty());
        EXPECT_EQ(lines, error ? Texts{"down"} : Texts{});
    }
}

TEST_F(ConversationHistoryTest, what_nobody_has_answered_is_not_stored) {
    const auto escape = [&] {
        for (int presses = 0; presses < 3; ++presses)
            model->dismissStep();
        platform.runUntilIdle();
        EXPECT_EQ(summaryCount(), 0U);
        EXPECT_TRUE(model->_messages->empty());
    };
    for (const int status : {400, 429}) {
        ask("one");
        serveData(status, "");
        escape();
    }
    ask("one");
    failToConnect("down");
    escape();
    for (const bool isOpen : {false, true}) {
        ask("one");
        if (isOpen)
            stream().deliverStatus(200);
        platform.runUntilIdle();
        model->dismissStep();
        platform.runUntilIdle();
        model->_responseValue = std::string("openChat");
        escape();
    }
    // What an earlier program has stored without an answer stays as it is.
    model->storeConversation("Empty", {}, -1);
    openStored(0);
    escape();
    EXPECT_EQ(topics(), Texts{"Empty"});
}

TEST_F(ConversationHistoryTest, a_conversation_is_stored_as_it_was_when_it_was_closed) {
    converse("one", "1");
    model->dismissStep();
    platform::FakeDataTask& first = summary();
    converse("two", "2");
    first.answer(200, response("One"));
    platform.runUntilIdle();
    EXPECT_EQ(model->_oldMessages->front().message.at(1).content, "one");
}

} // namespace
} // namespace quillmoth
