#include "EventSource/EventSource.h"
#include "tests/integration/network/NetworkTest.h"

namespace quillmoth::test {

namespace {

using Text = std::optional<std::string>;

class EventSourceOverHTTP : public NetworkTest {
protected:
    struct Completion {
        std::optional<int> status;
        std::optional<platform::URLError> error;
    };

    std::shared_ptr<EventSource> connect(const std::string& path) {
        auto source = EventSource::create(loop, *sessions, queues, postRequest(server.url(path)),
                                          {{"Authorization", "Bearer k"}});
        source->onOpen([this] { ++opened; });
        source->onMessage(
            [this](const Text&, const Text&, const Text& data) { messages += data.value_or("-"); });
        source->onComplete([this](auto status, auto, auto error) {
            completions.push_back({status, std::move(error)});
        });
        source->connect();
        return source;
    }

    bool waitForCompletions(std::size_t count = 1) {
        return loop.runUntil([&] { return completions.size() >= count; });
    }

    bool waitForMessages(const std::string& expected) {
        return loop.runUntil([&] { return messages == expected; });
    }

    /// Runs the loop, also where nothing is queued, until the source has gone.
    bool waitForEnd(const std::weak_ptr<EventSource>& source) {
        return loop.runUntil([&] {
            loop.async([] {});
            return source.expired();
        });
    }

    int opened = 0;
    std::string messages;
    std::vector<Completion> completions;
};

TEST_F(EventSourceOverHTTP, GivesTheSameEventsHoweverTheAnswerEndsAndIsCutAndFramed) {
    std::vector<std::string> events;
    std::string whole;
    for (const char* text : {"Grüße", "aus", "東京", "👩‍💻", "."}) {
        events.push_back("data: " + std::string(text) + "\r\n\r\n");
        whole += text;
    }
    const auto expectAnswer = [&](const ScriptedAnswer& answer, const std::string& expected) {
        opened = 0;
        messages.clear();
        completions.clear();
        server.answer("/stream", answer);
        const auto source = connect("/stream");
        ASSERT_TRUE(waitForCompletions());
        EXPECT_EQ(opened, 1) << answer.status;
        EXPECT_EQ(messages, expected) << answer.status;
        EXPECT_EQ(completions[0].status, answer.status);
        EXPECT_FALSE(completions[0].error) << answer.status;
        source->disconnect();
    };
    for (const Framing framing : {Framing::chunked, Framing::contentLength, Framing::untilClose}) {
        for (std::uint32_t seed = 1; seed <= 5; ++seed) {
            ScriptedAnswer answer = cutRandomly(eventStream(events), seed);
            answer.framing = framing;
            expectAnswer(answer, whole);
        }
    }
    for (const int status : {201, 301, 400, 401, 500}) {
        ScriptedAnswer answer = eventStream({"data: a\n\n", "data: b"});
        answer.status = status;
        expectAnswer(answer, "a");
        answer.steps.emplace_back(Reset{});
        expectAnswer(answer, "a");
    }
    for (const int status : {204, 304})
        expectAnswer({.status = status}, "");
}

TEST_F(EventSourceOverHTTP, DeliversEachPieceWhenItComesAndEndsWhenToldTo) {
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

    server.answer("/silent", silentAnswer());
    const auto silent = connect("/silent");
    ASSERT_TRUE(server.waitForRequests(2));
    silent->disconnect();
    ASSERT_TRUE(waitForCompletions(2));
    EXPECT_EQ(completions[1].status, std::nullopt);
    EXPECT_EQ(completions[1].error.value_or(platform::URLError()).code, Code::cancelled);
    EXPECT_TRUE(server.waitForEndedConnections(2));
    // The next exchange finds the network in order, and nothing more comes of the first.
    server.answer("/next", eventStream({"data: c\n\n"}));
    connect("/next");
    ASSERT_TRUE(waitForCompletions(3));
    EXPECT_EQ(messages, "abc");
    EXPECT_EQ(opened, 2);
}

TEST_F(EventSourceOverHTTP, GoesAwayWithItsLastConnectionAlsoInMidStream) {
    server.answer("/stream", eventStream({"data: a\n\n"}));
    auto source = connect("/stream");
    ASSERT_TRUE(waitForCompletions());
    source->disconnect();
    const std::weak_ptr<EventSource> first = std::exchange(source, nullptr);
    EXPECT_TRUE(waitForEnd(first));

    ScriptedAnswer endless = eventStream(std::vector<std::string>(2000, "data: b\n\n"));
    endless.steps.emplace_back(WaitForClient{});
    server.answer("/endless", endless);
    source = connect("/endless");
    const std::weak_ptr<EventSource> second = source;
    source->onMessage([&](const Text&, const Text&, const Text&) {
        EXPECT_FALSE(second.expired());
        if (source)
            std::exchange(source, nullptr)->disconnect();
    });
    EXPECT_TRUE(waitForEnd(second));
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
            loop.async([&] { turned = true; });
            ASSERT_TRUE(loop.runUntil([&] { return turned; }));
            if (round == 3)
                source->disconnect();
        }
        source->disconnect();
    }
}

} // namespace

} // namespace quillmoth::test
