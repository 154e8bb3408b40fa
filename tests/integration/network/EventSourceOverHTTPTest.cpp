#include "tests/integration/network/NetworkTest.h"

namespace quillmoth::test {

namespace {

using Text = std::optional<std::string>;

class EventSourceOverHTTP : public NetworkTest {
protected:
    struct Completion {
        std::optional<int> status;
        std::optional<bool> reconnect;
        std::optional<platform::URLError> error;
    };

    std::shared_ptr<EventSource> makeSource(const std::string& url) {
        auto source = EventSource::create(mainQueue, *sessions, queues, postRequest(url),
                                          {{"Authorization", "Bearer k"}});
        source->onOpen([this] { ++opened; });
        source->onMessage(
            [this](const Text&, const Text&, const Text& data) { messages += data.value_or("-"); });
        source->onComplete([this](auto status, auto reconnect, auto error) {
            completions.push_back({status, reconnect, std::move(error)});
        });
        return source;
    }

    std::shared_ptr<EventSource> connect(const std::string& path) {
        auto source = makeSource(server.url(path));
        source->connect();
        return source;
    }

    bool waitForCompletions(std::size_t count = 1) {
        return mainQueue.runUntil([&] { return completions.size() >= count; });
    }

    bool waitForMessages(const std::string& expected) {
        return mainQueue.runUntil([&] { return messages == expected; });
    }

    int opened = 0;
    std::string messages;
    std::vector<Completion> completions;
};

TEST_F(EventSourceOverHTTP, CompletesWithTheStatusOfTheAnswer) {
    for (const int status : {200, 201, 204, 301, 304, 400, 401, 404, 429, 500, 503}) {
        opened = 0;
        messages.clear();
        completions.clear();
        ScriptedAnswer answer = eventStream({"data: a\n\n", "data: b"});
        answer.status = status;
        if (status == 204 || status == 304)
            answer.steps.clear();
        server.answer("/stream", answer);
        const auto source = connect("/stream");
        ASSERT_TRUE(waitForCompletions()) << status;
        EXPECT_EQ(opened, 1) << status;
        EXPECT_EQ(messages, answer.steps.empty() ? "" : "a") << status;
        EXPECT_EQ(completions[0].status, status);
        EXPECT_EQ(completions[0].reconnect, status > 200 && status < 300) << status;
        EXPECT_FALSE(completions[0].error) << status;
        source->disconnect();
    }
}

TEST_F(EventSourceOverHTTP, GivesTheSameEventsHoweverTheAnswerIsCutAndFramed) {
    std::vector<std::string> events;
    std::string whole;
    for (const char* text : {"Grüße", "aus", "東京", "👩‍💻", "."}) {
        events.push_back("data: " + std::string(text) + "\r\n\r\n");
        whole += text;
    }
    for (const Framing framing : {Framing::chunked, Framing::contentLength, Framing::untilClose}) {
        for (std::uint32_t seed = 1; seed <= 5; ++seed) {
            messages.clear();
            completions.clear();
            ScriptedAnswer answer = cutRandomly(eventStream(events), seed);
            answer.framing = framing;
            server.answer("/stream", answer);
            const auto source = connect("/stream");
            ASSERT_TRUE(waitForCompletions());
            EXPECT_EQ(messages, whole) << seed;
            source->disconnect();
        }
    }
}

TEST_F(EventSourceOverHTTP, KeepsWhatCameBeforeAResetAndCompletesWithTheStatus) {
    ScriptedAnswer answer = eventStream({"data: a\n\n", "data: b"});
    answer.steps.emplace_back(Reset{});
    server.answer("/stream", answer);
    connect("/stream");
    ASSERT_TRUE(waitForCompletions());
    EXPECT_EQ(messages, "a");
    EXPECT_EQ(completions[0].status, 200);
    EXPECT_FALSE(completions[0].error);
}

TEST_F(EventSourceOverHTTP, DeliversEachPieceWhenItComesAndEndsWhenToldToWhileStreaming) {
    const auto gate = makeLatch();
    ScriptedAnswer answer = eventStream({"data: a\n\n"});
    answer.steps.emplace_back(WaitFor{gate});
    answer.steps.emplace_back(Send{"data: b\n\n"});
    answer.steps.emplace_back(WaitForClient{});
    server.answer("/stream", answer);
    const auto source = connect("/stream");
    ASSERT_TRUE(waitForMessages("a"));
    gate->release();
    ASSERT_TRUE(waitForMessages("ab"));

    source->disconnect();
    source->disconnect();
    EXPECT_EQ(source->readyState(), EventSourceState::closed);
    EXPECT_TRUE(server.waitForEndedConnections(1));
    ASSERT_TRUE(waitForCompletions());
    EXPECT_EQ(completions[0].status, 200);
    // The next exchange finds the network in order, and nothing more comes of the first.
    server.answer("/next", eventStream({"data: c\n\n"}));
    connect("/next");
    ASSERT_TRUE(waitForCompletions(2));
    EXPECT_EQ(completions.size(), 2U);
    EXPECT_EQ(messages, "abc");
}

TEST_F(EventSourceOverHTTP, CanBeCancelledWhileTheServerIsSilent) {
    server.answer("/stream", silentAnswer());
    const auto source = connect("/stream");
    ASSERT_TRUE(server.waitForRequests(1));
    EXPECT_EQ(source->readyState(), EventSourceState::connecting);
    source->disconnect();
    ASSERT_TRUE(waitForCompletions());
    EXPECT_EQ(opened, 0);
    EXPECT_EQ(completions[0].status, std::nullopt);
    EXPECT_EQ(completions[0].reconnect, std::nullopt);
    ASSERT_TRUE(completions[0].error);
    EXPECT_EQ(completions[0].error->code, Code::cancelled);
    EXPECT_TRUE(server.waitForEndedConnections(1));
}

TEST_F(EventSourceOverHTTP, FollowsARedirectWithItsHeaders) {
    ScriptedChatServer other;
    server.answer("/old", redirectAnswer(307, other.url("/new")));
    other.answer("/new", eventStream({"data: a\n\n"}));
    connect("/old");
    ASSERT_TRUE(waitForCompletions());
    EXPECT_EQ(completions[0].status, 200);
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(messages, "a");
    const ScriptedRequest request = other.requests().at(0);
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.body, R"({"stream":true})");
    EXPECT_EQ(request.header("Authorization"), "Bearer k");
    EXPECT_EQ(request.header("Accept"), "text/event-stream");
}

TEST_F(EventSourceOverHTTP, KeepsBothConnectionsOfADoubleConnectRunning) {
    const auto gate = makeLatch();
    ScriptedAnswer answer = eventStream({"data: a\n\n"});
    answer.steps.emplace_back(WaitFor{gate});
    answer.steps.emplace_back(Send{"data: b\n\n"});
    server.answer("/stream", answer);
    const auto source = connect("/stream");
    source->connect();
    ASSERT_TRUE(waitForMessages("aa"));
    EXPECT_EQ(server.connectionCount(), 2);
    gate->release();
    ASSERT_TRUE(waitForCompletions(2));
    EXPECT_EQ(messages, "aabb");
    source->disconnect();
}

TEST_F(EventSourceOverHTTP, GoesAwayWithItsLastConnection) {
    server.answer("/stream", eventStream({"data: a\n\n"}));
    auto source = connect("/stream");
    const std::weak_ptr<EventSource> weak = source;
    ASSERT_TRUE(waitForCompletions());
    source->disconnect();
    source = nullptr;
    EXPECT_TRUE(mainQueue.runUntil([&] {
        mainQueue.async([] {});
        return weak.expired();
    }));

    // The same in the middle of the stream, with calls on their way.
    ScriptedAnswer endless = eventStream(std::vector<std::string>(2000, "data: b\n\n"));
    endless.steps.emplace_back(WaitForClient{});
    server.answer("/endless", endless);
    source = makeSource(server.url("/endless"));
    const std::weak_ptr<EventSource> second = source;
    bool dropped = false;
    source->onMessage([&](const Text&, const Text&, const Text&) {
        EXPECT_FALSE(dropped && second.expired());
        if (source) {
            source->disconnect();
            source = nullptr;
            dropped = true;
        }
    });
    source->connect();
    EXPECT_TRUE(mainQueue.runUntil([&] {
        mainQueue.async([] {});
        return dropped && second.expired();
    }));
}

TEST_F(EventSourceOverHTTP, MayBeReadAndChangedWhileItStreams) {
    server.answer("/stream",
                  eventStream(std::vector<std::string>(500, "id: 1\nevent: e\nretry: 5\ndata: x\n\n")));
    for (int round = 0; round < 5; ++round) {
        completions.clear();
        const auto source = connect("/stream");
        while (completions.empty()) {
            source->addEventListener("e", [](const Text&, const Text&, const Text&) {});
            const Text id = source->lastEventId();
            EXPECT_TRUE(!id || id == "1");
            EXPECT_TRUE(source->retryTime() == 5 || source->retryTime() == 3000);
            EXPECT_LE(source->events().size(), 1U);
            source->removeEventListener("e");
            bool turned = false;
            mainQueue.async([&] { turned = true; });
            ASSERT_TRUE(mainQueue.runUntil([&] { return turned; }));
            if (round == 3)
                source->disconnect();
        }
        source->disconnect();
    }
}

} // namespace

} // namespace quillmoth::test
