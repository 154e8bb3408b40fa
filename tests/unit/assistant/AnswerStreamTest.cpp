#include "tests/unit/assistant/AssistantFixture.h"

namespace quillmoth {

namespace {

class AnswerStreamTest : public AssistantFixture {
protected:
    void ask(const std::string& command = "hi") {
        model->_selectedIndex = DataModel::kTypedCommand;
        model->_command = command;
        model->runPrompt();
    }

    /// What the next turn of the main queue assigns, once all that was delivered has reached it.
    Texts nextTurn() {
        platform.operationQueues.runUntilIdle();
        return assignments([&] { platform.mainQueue.runOne(); });
    }
};

TEST_F(AnswerStreamTest, an_answer_grows_in_the_last_message_and_in_the_response) {
    ask();
    EXPECT_EQ(*model->_responseValue, " ");
    EXPECT_EQ(*model->_command, " ");
    stream().deliverStatus(200);
    stream().deliverData("data: {\"choices\":[{\"delta\":{\"role\":\"assistant\"},\"index\":0}]}\n\n");
    platform.runUntilIdle();
    EXPECT_EQ(*model->_responseValue, "");
    EXPECT_EQ(model->_messages->back().role, "assistant");
    stream().deliverData(piece("Hel") + piece("lo") +
                         ": ping\n\ndata: nonsense\n\ndata: {}\n\ndata: [DONE]\n\n");
    platform.runUntilIdle();
    EXPECT_EQ(*model->_responseValue, "Hello");
    EXPECT_TRUE(model->_isLoading);
    stream().complete();
    platform.runUntilIdle();
    EXPECT_EQ(model->_messages->back().content, "Hello");
    EXPECT_FALSE(model->_isLoading);
    EXPECT_EQ(*model->_command, "");
    EXPECT_EQ(*model->_error, "");
    EXPECT_EQ(platform.urlSessions.shared().tasks().size(), 0U) << "a finished answer is not stored yet";
}

TEST_F(AnswerStreamTest, the_two_starts_assign_each_in_its_own_order) {
    model->_command = std::string("hi");
    EXPECT_EQ(assignments([&] { model->sendPrompt("hi"); }),
              (Texts{"_messages", "_command", "_messages", "_isLoading", "_responseValue", "_eventSource"}));
    stream().deliverStatus(200);
    model->_command = std::string("typed meanwhile");
    EXPECT_EQ(nextTurn(), Texts{});
    EXPECT_EQ(nextTurn(), (Texts{"_responseValue", "_messages", "_command"}));
    EXPECT_EQ(*model->_responseValue + *model->_command, " ");
    stream().deliverData(piece("1"));
    EXPECT_EQ(nextTurn(), Texts{});
    EXPECT_EQ(nextTurn(), (Texts{"_responseValue", "_messages"}));
    stream().complete();
    EXPECT_EQ(assignments([&] { platform.runUntilIdle(); }), (Texts{"_error", "_isLoading", "_command"}));
    EXPECT_TRUE(platform.urlSessions.lastSession().isInvalidated()) << "the client does not close itself";

    model->_error = std::string("old");
    EXPECT_EQ(assignments([&] { model->regenerate(); }),
              (Texts{"_command", "_messages", "_error", "_isLoading", "_responseValue", "_eventSource"}));
    EXPECT_EQ(*model->_responseValue + *model->_error, "");
    stream().deliverStatus(200);
    model->_responseValue = std::string("old");
    model->_command = std::string("typed meanwhile");
    EXPECT_EQ(nextTurn(), Texts{"_responseValue"});
    EXPECT_EQ(nextTurn(), (Texts{"_messages", "_command"}));
    EXPECT_EQ(*model->_responseValue + *model->_command, " ");
    stream().deliverData(piece("2"));
    EXPECT_EQ(nextTurn(), Texts{});
    EXPECT_EQ(nextTurn(), (Texts{"_messages", "_responseValue"}));
    EXPECT_EQ(texts(model->_messages),
              (Texts{"system: You are a helpful assistant.", "user: hi", "assistant: 2"}));
    EXPECT_EQ(*model->_responseValue, "2");
}

TEST_F(AnswerStreamTest, a_running_request_is_not_regenerated) {
    ask();
    EXPECT_EQ(assignments([&] { model->regenerate(); }), Texts{});
    EXPECT_EQ(streamCount(), 1U);
}

TEST_F(AnswerStreamTest, each_status_ends_in_its_words_and_drops_the_exchange) {
    struct Case {
        int status;
        /// The error, or its beginning.
        std::string error;
        /// What is left to be shown where the conversation is archived.
        std::string archived;
    };

    const Case cases[] = {
        {400, "Error 400: Bad request. Your request is too long.", "Error 400"},
        {401, "Error 401: Your API key is invalid, Please check again.", ""},
        {402, "Error 402", ""},
        {404, "Error 404: The model does not exist.", ""},
        {429,
         "Error 429: Rate limit reached for requests.\nThe most likely cause is you have spent all of your "
         "OpenAI free tokens, To upgrade to a OpenAI paid plan, visit https://",
         "Error 429"},
        {500, "Error 500", ""},
        {204, "Error 204", ""},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.status);
        model->_messages = std::vector<ChatMessage>();
        converse("one", {"1"});
        const Texts former = texts(model->_messages);
        const auto& summaries = platform.urlSessions.shared().tasks();
        const std::size_t count = summaries.size();
        ask();
        serve(each.status);
        EXPECT_TRUE(model->_error->starts_with(each.error)) << *model->_error;
        EXPECT_EQ(*model->_responseValue, each.archived);
        EXPECT_EQ(texts(model->_messages), former);
        EXPECT_FALSE(model->_isLoading);
        EXPECT_EQ(*model->_command, "");
        EXPECT_TRUE(platform.urlSessions.lastSession().isInvalidated());
        ASSERT_EQ(summaries.size(), count + (each.archived.empty() ? 0 : 1));
        if (!each.archived.empty()) {
            const auto body = readChatBody(*summary().request().httpBody, platform.uuidSource);
            EXPECT_EQ(body->messages.size(), former.size() + 1) << "without the exchange that failed";
        }

        model->_messages = std::vector<ChatMessage>();
        converse("one", {"1"});
        model->regenerate();
        serve(each.status);
        EXPECT_EQ(*model->_responseValue, "");
        EXPECT_EQ(texts(model->_messages), Texts{former.front()});
        EXPECT_EQ(summaries.size(), count + (each.archived.empty() ? 0 : 1)) << "a new answer is not stored";
    }
}

TEST_F(AnswerStreamTest, a_refused_connection_gives_the_text_back) {
    ask("my long question");
    failToConnect("Could not connect.");
    EXPECT_TRUE(model->_messages->empty());
    EXPECT_EQ(*model->_command, "my long question");
    EXPECT_EQ(*model->_error, "Could not connect.");
    EXPECT_FALSE(model->_isLoading);
}

TEST_F(AnswerStreamTest, a_failed_connection_later_takes_the_former_answer_too) {
    converse("one", {"1"});
    ask("two");
    failToConnect("Could not connect.");
    EXPECT_EQ(texts(model->_messages), (Texts{"system: Your are helpful assistant", "user: one"}));
}

TEST_F(AnswerStreamTest, neither_status_nor_error_means_no_connection) {
    ask();
    stream().complete();
    platform.runUntilIdle();
    EXPECT_EQ(*model->_error, "No internet connection");
    EXPECT_EQ(model->_messages->size(), 2U);
}

TEST_F(AnswerStreamTest, a_200_that_is_no_whole_answer_is_told_and_loses_nothing) {
    platform.userDefaults.set("gatewayBaseURL", std::string("https://gateway.example:8443/relay"));
    const std::string noService =
        "gateway.example:8443 did not answer as a chat service does. Your text is back in the field. Check "
        "the "
        "address of the server in Settings, and whether this network wants you to log in first.";
    const std::string sendAgain = " Your text is back in the field; Return sends it again.";
    const std::string noText = "gateway.example:8443 sent an answer without text." + sendAgain;
    const std::string cut =
        "It broke. The answer is not complete. What has come of it is kept; Ctrl+R asks for it again.";
    const std::string role = R"(data: {"choices":[{"delta":{"role":"assistant"},"index":0}]})"
                             "\n\n";
    const std::string done = "data: [DONE]\n\n";

    struct Case {
        std::string body;
        bool breaks;
        std::string error;
        std::string response;
    };

    const Case cases[] = {
        {"", false, noService, ""},
        {"<html>\n\n<body>Log in</body>\n\n</html>\n\n", false, noService, ""},
        {"data: {\"error\":{}}\n\n", false, noService, ""},
        {role + done, false, noText, ""},
        {role, true, "It broke." + sendAgain, ""},
        {piece("part"), true, cut, "part"},
        {piece("all") + done, true, "", "all"},
        {piece("all"), false, "", "all"},
    };
    const auto answer = [&](const Case& each) {
        stream().deliverStatus(200);
        stream().deliverData(each.body);
        stream().complete(each.breaks ? std::optional(platform::URLError{
                                            platform::URLError::Code::connectionLost, "It broke."})
                                      : std::nullopt);
        platform.runUntilIdle();
        EXPECT_EQ(*model->_error, each.error);
        EXPECT_EQ(*model->_responseValue, each.response);
        EXPECT_EQ(*model->_command, each.response.empty() ? "my question" : "");
        EXPECT_EQ(model->_messages->size(), each.response.empty() ? 1U : 3U);
        EXPECT_FALSE(model->_isLoading);
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.body);
        model->_messages = std::vector<ChatMessage>();
        ask("my question");
        answer(each);
        model->_messages = std::vector<ChatMessage>();
        converse("my question", {"1"});
        model->regenerate();
        answer(each);
    }
}

TEST_F(AnswerStreamTest, a_cancelled_stream_keeps_what_has_come_and_its_completion_is_swallowed) {
    ask();
    stream().deliverStatus(200);
    stream().deliverData(piece("part"));
    platform.runUntilIdle();
    stream().deliverData(piece(" on its way"));
    nextTurn();
    EXPECT_EQ(assignments([&] { model->dismissStep(); }),
              (Texts{"_isLoading", "_command", "_isCancelRequest"}));
    EXPECT_FALSE(model->_isLoading);
    EXPECT_TRUE(model->_isCancelRequest);
    EXPECT_TRUE(platform.urlSessions.lastSession().isInvalidated());
    platform.runUntilIdle();
    EXPECT_FALSE(model->_isCancelRequest);
    EXPECT_EQ(*model->_responseValue, "part on its way");
    EXPECT_EQ(model->_messages->back().content, "part on its way");
}

TEST_F(AnswerStreamTest, a_completion_that_comes_after_the_next_request_does_not_end_it) {
    ask("one");
    stream().deliverStatus(200);
    stream().deliverData(piece("1"));
    platform.runUntilIdle();
    model->dismissStep();
    ask("two");
    platform.runUntilIdle();
    EXPECT_FALSE(model->_isCancelRequest);
    EXPECT_TRUE(model->_isLoading);
    serve(200, {"2"});
    EXPECT_FALSE(model->_isLoading);
    EXPECT_EQ(model->_messages->back().content, "2");
}

TEST_F(AnswerStreamTest, a_regeneration_that_cannot_connect_gives_no_text_back) {
    converse("one", {"1"});
    model->regenerate();
    failToConnect("Could not connect.");
    EXPECT_EQ(*model->_command, "");
    EXPECT_EQ(*model->_error, "Could not connect.");
    EXPECT_TRUE(model->_messages->empty());
}

TEST_F(AnswerStreamTest, pieces_for_a_conversation_that_has_gone_and_pieces_without_a_choice_do_no_harm) {
    EXPECT_THROW(model->regenerate(), FatalFault);
    const auto open = [&] {
        stream().deliverStatus(200);
        platform.runUntilIdle();
        model->_messages = std::vector<ChatMessage>();
        stream().deliverData(piece("1"));
    };
    ask();
    open();
    platform.runUntilIdle();
    EXPECT_EQ(*model->_responseValue, "1") << "a first answer needs no message";
    for (int count = 0; count < 2; ++count)
        stream().deliverData("data: {\"choices\":[]}\n\n");
    platform.runUntilIdle();
    EXPECT_EQ(*model->_responseValue, "1");
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "ignoring a piece of the answer without a choice"), 1);

    model->_isLoading = false;
    model->appendMessage("assistant", "old");
    model->regenerate();
    open();
    platform.runUntilIdle();
    EXPECT_EQ(*model->_responseValue, "");
    stream().complete(platform::URLError{{}, "down"});
    platform.runUntilIdle();
    EXPECT_FALSE(model->_isLoading);
}

TEST_F(AnswerStreamTest, callbacks_do_nothing_when_the_model_has_gone) {
    ask();
    platform::FakeDataTask& task = stream();
    task.deliverStatus(200);
    task.deliverData(piece("x"));
    model.reset();
    EXPECT_NO_THROW(platform.runUntilIdle());
}

} // namespace

} // namespace quillmoth
