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
};

TEST_F(ConversationHistoryTest, a_closed_conversation_is_summarised_and_stored_first) {
    converse("one", {"1"});
    closeConversation("🌍 One");
    converse("two", {"2"});
    closeConversation(" 🌍 Two\\n");
    EXPECT_EQ(topics(), (Texts{" 🌍 Two\n", "🌍 One"}));
    EXPECT_EQ(model->_oldMessages->front().message.size(), 3U) << "the request for the topic is not stored";
    EXPECT_EQ(model->_oldMessages->front().created, platform.clock.now);
    const std::string file = platform.documents.content(DataModel::kHistoryFilename);
    const auto stored = readOldMessages(file, platform.uuidSource);
    ASSERT_EQ(stored->size(), 2U);
    EXPECT_TRUE(stored->front().message.front().id) << "which the views tell the messages apart by";
    EXPECT_EQ(file.find("\"id\""), std::string::npos);
}

TEST_F(ConversationHistoryTest, the_request_for_the_topic_carries_the_conversation_and_its_own_prompt) {
    platform.userDefaults.set("model", std::string("gpt-4"));
    converse("one", {"1"});
    model->dismissStep();
    const auto body = readChatBody(*summary().request().httpBody, platform.uuidSource);
    ASSERT_TRUE(body);
    EXPECT_EQ(body->model, "gpt-4");
    EXPECT_EQ(body->stream, false);
    ASSERT_EQ(body->messages.size(), 4U);
    EXPECT_EQ(body->messages.back().role, "user");
    EXPECT_EQ(body->messages.back().content.size(), 261U);
}

TEST_F(ConversationHistoryTest, a_reopened_conversation_keeps_its_place_and_its_date) {
    for (const char* topic : {"A", "B", "C"})
        model->storeConversation(topic, {{.id = "1", .role = "user", .content = topic}}, -1);
    const double created = model->_oldMessages->at(2).created;
    model->_openHistory = true;
    model->_keyHistorySelected = 2;
    model->runPrompt();
    platform.clock.now += 60;
    model->_command = std::string("more");
    model->_messages.mutate([](auto& messages) {
        messages.push_back({.id = "2", .role = "assistant", .content = "a"});
        messages.push_back({.id = "3", .role = "user", .content = "b"});
    });
    model->runPrompt();
    serve(200, {"answer"});
    closeConversation("A again");
    EXPECT_EQ(topics(), (Texts{"C", "B", "A again"}));
    EXPECT_EQ(model->_oldMessages->at(2).message.back().content, "answer");
    EXPECT_EQ(model->_oldMessages->at(2).created, created);
    EXPECT_EQ(model->_chatWithHistory, -1);
}

TEST_F(ConversationHistoryTest, an_answer_that_is_no_record_gives_a_topic_with_the_date) {
    for (const char* body : {"not valid JSON", R"({"error":{"message":"invalid key"}})"}) {
        SCOPED_TRACE(body);
        lines.clear();
        converse("one", {"1"});
        model->dismissStep();
        summary().answer(401, body);
        platform.runUntilIdle();
        EXPECT_EQ(model->_oldMessages->front().topic, "😀 Chat: 2023-11-14 22:13");
        const auto logged = std::find_if(lines.begin(), lines.end(), [](const std::string& line) {
            return line.rfind("Unexpected saving error: ", 0) == 0;
        });
        EXPECT_NE(logged, lines.end());
    }
}

TEST_F(ConversationHistoryTest, without_an_answer_nothing_is_stored) {
    converse("one", {"1"});
    model->dismissStep();
    summary().answer(std::nullopt, std::nullopt, platform::URLError{{}, "down"});
    platform.runUntilIdle();
    EXPECT_TRUE(model->_oldMessages->empty());
    EXPECT_EQ(lines.back(), "down");
    converse("two", {"2"});
    model->dismissStep();
    summary().answer(std::nullopt, std::nullopt, std::nullopt);
    platform.runUntilIdle();
    EXPECT_TRUE(model->_oldMessages->empty());
}

TEST_F(ConversationHistoryTest, what_nobody_has_answered_is_not_stored) {
    const auto escape = [&] {
        for (int presses = 0; presses < 3; ++presses)
            model->dismissStep();
        platform.runUntilIdle();
        EXPECT_TRUE(platform.urlSessions.shared().tasks().empty());
        EXPECT_TRUE(model->_messages->empty());
    };
    const auto ask = [&] {
        model->_selectedIndex = DataModel::kTypedCommand;
        model->_command = std::string("one");
        model->runPrompt();
    };
    for (const int status : {400, 429}) {
        ask();
        serve(status);
        escape();
    }
    ask();
    failToConnect("down");
    escape();
    ask();
    model->dismissStep();
    escape();
    // What an earlier program has stored without an answer stays as it is.
    model->storeConversation("Empty", {}, -1);
    model->_openHistory = true;
    model->_keyHistorySelected = 0;
    model->runPrompt();
    escape();
    EXPECT_EQ(topics(), Texts{"Empty"});
}

TEST_F(ConversationHistoryTest, a_conversation_is_stored_as_it_was_when_it_was_closed) {
    converse("one", {"1"});
    model->dismissStep();
    platform::FakeDataTask& first = summary();
    converse("two", {"2"});
    first.answer(200, response("One"));
    platform.runUntilIdle();
    EXPECT_EQ(model->_oldMessages->front().message.at(1).content, "one");
}

TEST_F(ConversationHistoryTest, a_failed_save_is_logged_and_memory_keeps_the_change) {
    platform.documents.isDiskFull = true;
    model->storeConversation("T", {}, -1);
    EXPECT_EQ(lines.back(), "error writing data");
    EXPECT_EQ(topics(), Texts{"T"});
    platform.documents.isDiskFull = false;
    model->storeConversation("U", {}, -1);
    EXPECT_EQ(
        readOldMessages(platform.documents.content(DataModel::kHistoryFilename), platform.uuidSource)->size(),
        2U);
}

TEST_F(ConversationHistoryTest, an_index_at_the_end_is_a_fatal_fault) {
    EXPECT_THROW(model->storeConversation("T", {}, 0), FatalFault);
}

} // namespace

} // namespace quillmoth
