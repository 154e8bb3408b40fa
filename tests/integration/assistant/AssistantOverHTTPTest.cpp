// The assistant with a real network and real queues, against a real server on the loopback interface.

#include "Foundation/Log.h"
#include "Platform/Curl/CurlURLSessions.h"
#include "Platform/Fake/FakePlatform.h"
#include "Platform/Posix/SerialOperationQueues.h"
#include "Quillmoth/Assistant/DataModel.h"
#include "tests/support/Latch.h"
#include "tests/support/RunLoop.h"
#include "tests/support/ScriptedChatServer.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace quillmoth {

namespace {

using test::ScriptedAnswer;

constexpr const char* kStreamPath = "/api/v1/chat/completions/stream";
constexpr const char* kOneShotPath = "/api/v1/chat/completions";
constexpr const char* kOpenAIPath = "/v1/chat/completions";

class AssistantOverHTTPTest : public testing::Test {
protected:
    AssistantOverHTTPTest() : log_([](const std::string&) {}) {
        fakes.userDefaults.set("gatewayBaseURL", server.baseURL());
        fakes.userDefaults.set("openAIBaseURL", server.baseURL());
        model = DataModel::create(platform());
    }

    platform::Platform platform() {
        const platform::Platform fake = fakes.platform();
        return {.mainQueue = loop,
                .operationQueues = queues,
                .urlSessions = sessions,
                .pasteboard = fake.pasteboard,
                .accessibility = fake.accessibility,
                .keyboardEvents = fake.keyboardEvents,
                .hotKeyCenter = fake.hotKeyCenter,
                .keyboardLayout = fake.keyboardLayout,
                .workspace = fake.workspace,
                .userDefaults = fake.userDefaults,
                .documents = fake.documents,
                .bundle = fake.bundle,
                .clock = fake.clock,
                .uuidSource = fake.uuidSource,
                .panelWindows = fake.panelWindows,
                .statusItems = fake.statusItems,
                .application = fake.application};
    }

    /// Sends a typed command and runs the loop until the request is over.
    [[nodiscard]] bool ask(const std::string& command) {
        start(command);
        return loop.runUntil([&] { return !model->_isLoading; });
    }

    void start(const std::string& command) {
        model->_selectedIndex = DataModel::kTypedCommand;
        model->_command = command;
        model->runPrompt();
    }

    test::ScriptedChatServer server;
    platform::FakePlatform fakes;
    test::RunLoop loop;
    platform::SerialOperationQueues queues;
    platform::CurlURLSessions sessions{queues};
    ScopedLogCapture log_;
    std::shared_ptr<DataModel> model;
};

TEST_F(AssistantOverHTTPTest, an_answer_cut_anywhere_arrives_whole_and_its_conversation_is_stored) {
    server.answer(kStreamPath, test::cutRandomly(test::chatStream({"Hel", "lo, ", "wörld 🦉", "!"}), 7));
    server.answer(kOneShotPath, test::jsonAnswer(200, test::chatResponse("🌍 Greeting")));
    ASSERT_TRUE(ask("hi"));
    EXPECT_EQ(*model->_responseValue, "Hello, wörld 🦉!");
    EXPECT_EQ(model->_messages->back().content, *model->_responseValue);
    EXPECT_EQ(*model->_error, "");
    model->dismissStep();
    ASSERT_TRUE(loop.runUntil([&] { return !model->_oldMessages->empty(); }));
    EXPECT_EQ(model->_oldMessages->front().topic, "🌍 Greeting");
    EXPECT_EQ(model->_oldMessages->front().message.size(), 3U);
    EXPECT_NE(fakes.documents.content(DataModel::kHistoryFilename).find("wörld 🦉!"), std::string::npos);
}

TEST_F(AssistantOverHTTPTest, a_key_changes_the_route_and_goes_only_into_its_header) {
    server.answer(kOpenAIPath, test::chatStream({"x"}));
    fakes.userDefaults.set("openapikey", std::string("sk-secret"));
    ASSERT_TRUE(ask("hi"));
    const auto requests = server.requests();
    ASSERT_EQ(requests.size(), 1U);
    EXPECT_EQ(requests.front().path, kOpenAIPath);
    EXPECT_EQ(requests.front().method, "POST");
    EXPECT_EQ(requests.front().header("Authorization"), "Bearer sk-secret");
    EXPECT_EQ(requests.front().header("Accept"), "text/event-stream");
    EXPECT_EQ(requests.front().header("Content-Type"), "application/json");
    EXPECT_EQ(requests.front().body.find("sk-secret"), std::string::npos);
}

TEST_F(AssistantOverHTTPTest, each_status_ends_in_its_words_and_the_next_request_works) {
    for (const auto& [status, error] :
         {std::pair{401, "Error 401: Your API key is invalid, Please check again."},
          {404, "Error 404: The model does not exist."},
          {500, "Error 500"}}) {
        SCOPED_TRACE(status);
        server.answer(kStreamPath, test::jsonAnswer(status, R"({"error":{"message":"no"}})"));
        ASSERT_TRUE(ask("hi"));
        EXPECT_EQ(*model->_error, error);
        EXPECT_EQ(*model->_command, "");
        EXPECT_EQ(model->_messages->size(), 1U) << "the system message is left";
        server.answer(kStreamPath, test::chatStream({"fine"}));
        ASSERT_TRUE(ask("again"));
        EXPECT_EQ(*model->_error, "");
        EXPECT_EQ(*model->_responseValue, "fine");
        model->_messages = std::vector<ChatMessage>();
    }
}

TEST_F(AssistantOverHTTPTest, a_reset_in_mid_stream_keeps_what_had_come) {
    ScriptedAnswer answer = test::chatStream({"part"});
    answer.steps.pop_back();
    answer.steps.emplace_back(test::Reset{});
    server.answer(kStreamPath, answer);
    ASSERT_TRUE(ask("hi"));
    EXPECT_EQ(*model->_responseValue, "part");
    EXPECT_EQ(model->_messages->size(), 3U);
    EXPECT_NE(model->_error->find(" was lost. The answer is not complete."), std::string::npos)
        << *model->_error;
}

TEST_F(AssistantOverHTTPTest, what_is_no_chat_service_is_told_and_the_text_comes_back) {
    const auto page = [](std::vector<std::pair<std::string, std::string>> headers, std::string body) {
        return ScriptedAnswer{.headers = std::move(headers), .steps = {test::Send{std::move(body)}}};
    };
    ScriptedAnswer broken = test::eventStream({"data: {"});
    broken.steps.emplace_back(test::Reset{});
    ScriptedAnswer endless = page({}, "");
    for (int number = 0; number < 400; ++number)
        endless.headers.emplace_back("X-" + std::to_string(number), std::string(4000, 'x'));
    server.answer("/login", page({{"Content-Type", "text/html"}}, "<html>\n\nLog in\n\n</html>"));
    const std::pair<ScriptedAnswer, const char*> cases[] = {
        {page({{"Content-Type", "text/html"}}, "<html>\n\nLog in\n\n</html>"), "as a chat service does"},
        {test::redirectAnswer(302, "/login"), "as a chat service does"},
        {test::jsonAnswer(200, ""), "as a chat service does"},
        {test::jsonAnswer(200, test::chatResponse("whole")), "as a chat service does"},
        {page({{"Content-Encoding", "gzip"}}, "\x1f\x8b\x08"), "as a chat service does"},
        {broken, " was lost. "},
        {endless, "127.0.0.1"},
    };
    for (const auto& [answer, words] : cases) {
        server.answer(kStreamPath, answer);
        ASSERT_TRUE(ask("my question"));
        EXPECT_NE(model->_error->find(words), std::string::npos) << *model->_error;
        EXPECT_NE(model->_error->find("127.0.0.1"), std::string::npos) << *model->_error;
        EXPECT_EQ(*model->_command, "my question");
    }
    // The name of the type does not matter.
    ScriptedAnswer stream = test::chatStream({"fine"});
    stream.headers = {{"Content-Type", "text/html"}};
    server.answer(kStreamPath, stream);
    ASSERT_TRUE(ask("my question"));
    EXPECT_EQ(*model->_responseValue, "fine");
    EXPECT_EQ(*model->_error, "");
}

TEST_F(AssistantOverHTTPTest, an_unreachable_server_gives_the_text_back_with_an_error_that_names_it) {
    fakes.userDefaults.set("gatewayBaseURL", std::string("http://127.0.0.1:1"));
    ASSERT_TRUE(ask("my question"));
    EXPECT_EQ(*model->_command, "my question");
    EXPECT_NE(model->_error->find("127.0.0.1"), std::string::npos) << *model->_error;
    EXPECT_TRUE(model->_messages->empty());
}

TEST_F(AssistantOverHTTPTest, a_server_that_never_answers_is_left_with_escape) {
    server.answer(kStreamPath, test::silentAnswer());
    start("hi");
    ASSERT_TRUE(server.waitForRequests(1));
    model->dismissStep();
    EXPECT_FALSE(model->_isLoading);
    ASSERT_TRUE(loop.runUntil([&] { return !model->_isCancelRequest; }));
    server.answer(kStreamPath, test::chatStream({"fine"}));
    ASSERT_TRUE(ask("again"));
    EXPECT_EQ(*model->_responseValue, "fine");
}

TEST_F(AssistantOverHTTPTest, a_cancelled_stream_does_not_end_the_next_one) {
    const auto gate = std::make_shared<test::Latch>();
    ScriptedAnswer held = test::chatStream({"one"});
    held.steps.insert(held.steps.end() - 1, test::WaitFor{gate});
    server.answer(kStreamPath, held);
    start("first");
    ASSERT_TRUE(loop.runUntil([&] { return *model->_responseValue == "one"; }));
    server.answer(kStreamPath, test::chatStream({"two"}));
    model->dismissStep();
    ASSERT_TRUE(ask("second"));
    EXPECT_EQ(model->_messages->back().content, "two");
    EXPECT_FALSE(model->_isCancelRequest);
    gate->release();
}

} // namespace

} // namespace quillmoth
