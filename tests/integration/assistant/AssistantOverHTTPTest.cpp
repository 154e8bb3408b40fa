#include "Foundation/Log.h"
#include "Platform/Fake/FakePlatform.h"
#include "Quillmoth/Assistant/DataModel.h"
#include "tests/integration/network/NetworkTest.h"

namespace quillmoth {

namespace {

using test::ScriptedAnswer;

constexpr const char* kStreamPath = "/api/v1/chat/completions/stream";
constexpr const char* kOneShotPath = "/api/v1/chat/completions";
constexpr const char* kOpenAIPath = "/v1/chat/completions";

class AssistantOverHTTPTest : public test::NetworkTest {
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
                .urlSessions = *sessions,
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

    platform::FakePlatform fakes;
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
    const char* noService = "as a chat service does";
    const std::pair<ScriptedAnswer, const char*> cases[] = {
        {test::redirectAnswer(302, "/login"), noService},
        {test::jsonAnswer(200, ""), noService},
        {test::jsonAnswer(200, test::chatResponse("whole")), noService},
        {page({{"Content-Encoding", "gzip"}}, "\x1f\x8b\x08"), noService},
        {broken, " was lost. Your text is back"},
        {endless, "127.0.0.1"},
    };
    for (const auto& [answer, words] : cases) {
        server.answer(kStreamPath, answer);
        ASSERT_TRUE(ask("my question"));
        EXPECT_NE(model->_error->find(words), std::string::npos) << *model->_error;
        EXPECT_NE(model->_error->find("127.0.0.1"), std::string::npos) << *model->_error;
        EXPECT_EQ(*model->_command, "my question");
    }
    ScriptedAnswer part = test::chatStream({"part"});
    part.steps.back() = test::Reset{};
    server.answer(kStreamPath, part);
    ASSERT_TRUE(ask("my question"));
    EXPECT_EQ(*model->_responseValue, "part");
    EXPECT_NE(model->_error->find(" was lost. The answer is not complete."), std::string::npos);
    model->_messages = std::vector<ChatMessage>();
    // The name of the type does not matter.
    ScriptedAnswer stream = test::chatStream({"fine"});
    stream.headers = {{"Content-Type", "text/html"}};
    server.answer(kStreamPath, stream);
    ASSERT_TRUE(ask("my question"));
    EXPECT_EQ(*model->_responseValue, "fine");
    EXPECT_EQ(*model->_error, "");
    model->_messages = std::vector<ChatMessage>();
    fakes.userDefaults.set("gatewayBaseURL", std::string("http://127.0.0.1:1"));
    ASSERT_TRUE(ask("my question"));
    EXPECT_EQ(*model->_command, "my question");
    EXPECT_NE(model->_error->find("127.0.0.1:1"), std::string::npos) << *model->_error;
}

TEST_F(AssistantOverHTTPTest, what_is_left_with_escape_does_not_disturb_the_next_request) {
    const auto gate = std::make_shared<test::Latch>();
    ScriptedAnswer held = test::chatStream({"one"});
    held.steps.insert(held.steps.end() - 1, test::WaitFor{gate});
    std::size_t requests = 0;
    for (const ScriptedAnswer& answer : {held, test::silentAnswer()}) {
        server.answer(kStreamPath, answer);
        start("first");
        ASSERT_TRUE(server.waitForRequests(++requests));
        if (answer.sendsHead) {
            ASSERT_TRUE(loop.runUntil([&] { return *model->_responseValue == "one"; }));
        }
        server.answer(kStreamPath, test::chatStream({"two"}));
        model->dismissStep();
        EXPECT_FALSE(model->_isLoading);
        ASSERT_TRUE(ask("second"));
        ++requests;
        EXPECT_EQ(model->_messages->back().content, "two");
        ASSERT_TRUE(loop.runUntil([&] { return !model->_isCancelRequest; }));
    }
    gate->release();
}

} // namespace

} // namespace quillmoth
