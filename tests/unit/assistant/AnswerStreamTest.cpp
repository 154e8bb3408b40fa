#include "Foundation/Limits.h"
#include "tests/unit/assistant/AssistantFixture.h"

namespace quillmoth {
namespace {

class AnswerStreamTest : public AssistantFixture {
protected:
    /// What the next turn of the main queue assigns, once all that was delivered has reached it.
    Texts nextTurn() {
        platform.operationQueues.runUntilIdle();
        return assignments([&] { platform.mainQueue.runOne(); });
    }

    /// The end, without a status or an error.
    void serveNothing() {
        stream().complete();
        platform.runUntilIdle();
    }

    void deliver(const std::string& data) {
        stream().deliverData(data);
        platform.runUntilIdle();
    }

    /// Opens the stream, and lets a first piece of the answer come.
    void begin(const std::string& answer) {
        stream().deliverStatus(200);
        deliver(piece(answer));
    }
};

TEST_F(AnswerStreamTest, an_answer_grows_in_the_last_message_and_in_the_response) {
    ask("hi");
    EXPECT_EQ(shown(), " | | ...");
    stream().deliverStatus(200);
    deliver("data: {\"choices\":[{\"delta\":{\"role\":\"assistant\"},\"index\":0}]}\n\n");
    EXPECT_EQ(shown(), "| | ...");
    EXPECT_EQ(model->_messages->back().role, "assistant");
    deliver(piece("Hel") + piece("lo") + ": ping\n\ndata: nonsense\n\ndata: {}\n\ndata: [DONE]\n\n");
    EXPECT_EQ(shown(), "Hello| | ...");
    serveNothing();
    EXPECT_EQ(shown(), "Hello||");
    EXPECT_EQ(model->_messages->back().content, "Hello");
    EXPECT_EQ(summaryCount(), 0U) << "a finished answer is not stored yet";
}

TEST_F(AnswerStreamTest, the_two_starts_assign_each_in_its_own_order) {
    model->_command = std::string("hi");
    EXPECT_EQ(assignments([&] { model->sendPrompt("hi"); }),
              (Texts{"_messages", "_command", "_messages", "_isLoading", "_responseValue", "_eventSource"}));
    stream().deliverStatus(200);
    model->_command = std::string("typed meanwhile");
    EXPECT_EQ(nextTurn(), Texts{});
    EXPECT_EQ(nextTurn(), (Texts{"_responseValue", "_messages", "_command"}));
    EXPECT_EQ(shown(), "| | ...");
    stream().deliverData(piece("1"));
    EXPECT_EQ(nextTurn(), Texts{});
    EXPECT_EQ(nextTurn(), (Texts{"_responseValue", "_messages"}));
    stream().complete();
    EXPECT_EQ(assignments([&] { platform.runUntilIdle(); }), (Texts{"_error", "_isLoading", "_command"}));
    EXPECT_TRUE(platform.urlSessions.lastSession().isInvalidated()) << "the client does not close itself";

    model->_error = std::string("old");
    EXPECT_EQ(assignments([&] { model->regenerate(); }),
              (Texts{"_command", "_messages", "_error", "_isLoading", "_responseValue", "_eventSource"}));
    EXPECT_EQ(shown(), "| | ...");
    EXPECT_EQ(assignments([&] { model->regenerate(); }), Texts{}) << "while it runs";
    EXPECT_EQ(streamCount(), 2U);
    stream().deliverStatus(200);
    model->_responseValue = std::string("old");
    model->_command = std::string("typed meanwhile");
    EXPECT_EQ(nextTurn(), Texts{"_responseValue"});
    EXPECT_EQ(shown(), "|typed meanwhile| ...");
    EXPECT_EQ(nextTurn(), (Texts{"_messages", "_command"}));
    EXPECT_EQ(shown(), "| | ...");
    stream().deliverData(piece("2"));
    EXPECT_EQ(nextTurn(), Texts{});
    EXPECT_EQ(nextTurn(), (Texts{"_messages", "_responseValue"}));
    EXPECT_EQ(texts(model->_messages),
              (Texts{"system: You are a helpful assistant.", "user: hi", "assistant: 2"}));
    EXPECT_EQ(shown(), "2| | ...");
}

TEST_F(AnswerStreamTest, each_status_ends_in_its_words_and_drops_the_exchange) {
    // The error or its beginning, and what is left to be shown where the conversation is archived.
    const std::tuple<int, const char*, std::string> cases[] = {
        {400, "Error 400: Bad request. Your request is too long.", "Error 400"},
        {401, "Error 401: Your API key is invalid, Please check again.", ""},
        {402, "Error 402", ""},
        {404, "Error 404: The model does not exist.", ""},
        {429, "Error 429: Rate limit reached for requests.\nThe most likely cause is you have spent all",
         "Error 429"},
        {500, "Error 500", ""},
        {204, "Error 204", ""},
    };
    std::size_t count = 0;
    for (const auto& [status, error, archived] : cases) {
        SCOPED_TRACE(status);
        startAnew();
        converse("one", "1");
        const Texts former = texts(model->_messages);
        ask("two");
        serveData(status, "");
        EXPECT_TRUE(shown().starts_with(archived + "||" + error)) << shown();
        EXPECT_FALSE(model->_isLoading);
        EXPECT_EQ(texts(model->_messages), former);
        EXPECT_TRUE(platform.urlSessions.lastSession().isInvalidated());
        ASSERT_EQ(summaryCount(), count += archived.empty() ? 0 : 1);
        if (!archived.empty()) {
            const auto body = readChatBody(*summary().request().httpBody, platform.uuidSource);
            EXPECT_EQ(body->messages.size(), former.size() + 1) << "without the exchange that failed";
        }

        startAnew();
        converse("one", "1");
        model->regenerate();
        serveData(status, "");
        EXPECT_EQ(*model->_responseValue, "");
        EXPECT_EQ(texts(model->_messages), Texts{former.front()});
        EXPECT_EQ(summaryCount(), count) << "a new answer is not stored";
    }
}

TEST_F(AnswerStreamTest, a_refused_connection_gives_the_text_of_a_new_question_back) {
    ask("my long question");
    failToConnect("down");
    EXPECT_EQ(shown(), " |my long question|down");
    EXPECT_TRUE(model->_messages->empty());
    ask("my long question");
    serveNothing();
    EXPECT_EQ(shown(), " ||No internet connection");
    EXPECT_EQ(model->_messages->size(), 2U);

    startAnew();
    converse("one", "1");
    ask("two");
    failToConnect("down");
    EXPECT_EQ(texts(model->_messages), (Texts{"system: Your are helpful assistant", "user: one"}))
        << "the former answer goes too";

    startAnew();
    converse("one", "1");
    model->regenerate();
    failToConnect("down");
    EXPECT_EQ(shown(), "||down");
    EXPECT_TRUE(model->_messages->empty());
}

TEST_F(AnswerStreamTest, a_200_that_is_no_whole_answer_is_told_and_loses_nothing) {
    platform.userDefaults.set("gatewayBaseURL", std::string("https://gateway.example:8443/relay"));
    const std::string noService = "gateway.example:8443 did not answer as a chat service does. Your text is "
                                  "back in the field. Check the address of the server in Settings, and "
                                  "whether this network wants you to log in first.";
    const std::string sendAgain = " Your text is back in the field; Return sends it again.";
    const std::string noText = "gateway.example:8443 sent an answer without text." + sendAgain;
    const std::string cut =
        "It broke. The answer is not complete. What has come of it is kept; Ctrl+R asks for it again.";
    const std::string role = "data: {\"choices\":[{\"delta\":{\"role\":\"assistant\"},\"index\":0}]}\n\n";
    const std::string done = "data: [DONE]\n\n";

    const std::tuple<std::string, bool, std::string, std::string> cases[] = {
        {"", false, noService, ""},
        {"<html>\n\n<body>Log in</body>\n\n</html>\n\n", false, noService, ""},
        {"data: {\"error\":{}}\n\n", false, noService, ""},
        {role + done, false, noText, ""},
        {role, true, "It broke." + sendAgain, ""},
        {piece("part"), true, cut, "part"},
        {piece("all") + done, true, "", "all"},
        {piece("all") + piece("") + role, false, "", "all"},
    };
    const platform::URLError broke{platform::URLError::Code::connectionLost, "It broke."};
    for (const auto& [body, breaks, error, response] : cases) {
        SCOPED_TRACE(body);
        for (const bool again : {false, true}) {
            startAnew();
            if (again) {
                converse("my question", "1");
                model->regenerate();
            } else {
                ask("my question");
            }
            serveData(200, body, breaks ? std::optional(broke) : std::nullopt);
            EXPECT_EQ(shown(), response + "|" + (response.empty() ? "my question|" : "|") + error);
            EXPECT_EQ(model->_messages->size(), response.empty() ? 1U : 3U);
        }
    }
}

TEST_F(AnswerStreamTest, a_cancelled_stream_keeps_what_has_come_and_its_completion_ends_nothing) {
    ask("one");
    begin("part");
    stream().deliverData(piece(" on its way"));
    nextTurn();
    EXPECT_EQ(assignments([&] { model->dismissStep(); }),
              (Texts{"_isLoading", "_command", "_isCancelRequest"}));
    EXPECT_EQ(shown(), "part||");
    EXPECT_TRUE(model->_isCancelRequest);
    EXPECT_TRUE(platform.urlSessions.lastSession().isInvalidated());
    platform.runUntilIdle();
    EXPECT_FALSE(model->_isCancelRequest);
    EXPECT_EQ(shown(), "part on its way||");
    EXPECT_EQ(model->_messages->back().content, "part on its way");

    ask("two");
    begin("1");
    model->dismissStep();
    ask("three");
    platform.runUntilIdle();
    EXPECT_FALSE(model->_isCancelRequest);
    EXPECT_TRUE(model->_isLoading) << "the completion was that of the former request";
    serveData(200, piece("2"));
    EXPECT_EQ(shown(), "2||");
    EXPECT_EQ(model->_messages->back().content, "2");
}

TEST_F(AnswerStreamTest, an_answer_without_end_is_cut_at_a_character_and_its_request_ended) {
    // Of three bytes each, so that the limit is in the midst of one.
    std::string part;
    while (part.size() < limits::kMegabyte)
        part += "€";
    for (const bool isRegenerated : {false, true}) {
        if (isRegenerated)
            model->regenerate();
        else
            ask("hi");
        begin("x");
        auto& task = stream();
        int sent = 0;
        for (; !task.isCancelled() && sent < 10; ++sent)
            deliver(piece(part));
        EXPECT_EQ(sent, 4);
        platform.runUntilIdle();
        const std::string& answer = model->_messages->back().content;
        EXPECT_LE(answer.size(), limits::kAnswer);
        EXPECT_GT(answer.size(), limits::kAnswer - 3);
        EXPECT_TRUE(answer.ends_with("€"));
        EXPECT_EQ(*model->_responseValue, answer);
        EXPECT_TRUE(model->_error->starts_with("The answer is longer than 4 MB.")) << *model->_error;
        EXPECT_FALSE(model->_isLoading);
    }
}

TEST_F(AnswerStreamTest, pieces_for_a_conversation_that_has_gone_and_pieces_without_a_choice_do_no_harm) {
    EXPECT_THROW(model->regenerate(), FatalFault);
    const auto open = [&] {
        stream().deliverStatus(200);
        platform.runUntilIdle();
        startAnew();
        stream().deliverData(piece("1"));
    };
    ask("hi");
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
    ask("hi");
    platform::FakeDataTask& task = stream();
    task.deliverStatus(200);
    task.deliverData(piece("x"));
    model.reset();
    EXPECT_NO_THROW(platform.runUntilIdle());
}

} // namespace
} // namespace quillmoth
