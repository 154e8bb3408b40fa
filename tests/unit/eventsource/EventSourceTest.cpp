#include "EventSource/EventSource.h"

#include "Foundation/Limits.h"
#include "Platform/Fake/FakeMainQueue.h"
#include "Platform/Fake/FakeOperationQueues.h"
#include "Platform/Fake/FakeURLSessions.h"

#include <gtest/gtest.h>

namespace quillmoth {
namespace {

using Strings = std::vector<std::string>;
using Text = std::optional<std::string>;

std::string shown(const Text& text) {
    return text.value_or("-");
}

class EventSourceTest : public testing::Test {
protected:
    EventSourceTest() { operationQueues.setRunsInline(true); }

    void TearDown() override { sessions.releaseDelegates(); }

    std::shared_ptr<EventSource> makeSource(EventSource::Headers headers = {{"Authorization", "Bearer k"}}) {
        auto source = EventSource::create(queue, sessions, operationQueues, request(), std::move(headers));
        source->onOpen([this] { log.emplace_back("open"); });
        source->onMessage(listener("message"));
        source->onComplete([this](std::optional<int> status, std::optional<bool> reconnect,
                                  const std::optional<platform::URLError>& error) {
            log.push_back("complete " + (status ? std::to_string(*status) : "-") + " " +
                          (reconnect ? *reconnect ? "yes" : "no" : "-") + " " +
                          (error ? error->localizedDescription : "-"));
        });
        return source;
    }

    EventSource::EventCallback listener(std::string name) {
        return [this, name = std::move(name)](const Text& id, const Text& event, const Text& data) {
            log.push_back(name + " " + shown(id) + " " + shown(event) + " " + shown(data));
        };
    }

    static platform::URLRequest request() {
        return {.url = "http://127.0.0.1/stream", .httpMethod = "POST", .headers = {}, .httpBody = "{}"};
    }

    /// A source whose stream is open; what it called so far is forgotten.
    std::shared_ptr<EventSource> openSource() {
        auto source = makeSource();
        source->connect();
        task().deliverStatus(200);
        queue.runUntilIdle();
        log.clear();
        return source;
    }

    platform::FakeURLSession& session() { return sessions.lastSession(); }

    platform::FakeDataTask& task() { return session().lastTask(); }

    Strings taken() {
        queue.runUntilIdle();
        return std::exchange(log, {});
    }

    platform::FakeMainQueue queue;
    platform::FakeOperationQueues operationQueues;
    platform::FakeURLSessions sessions;
    Strings log;
};

TEST_F(EventSourceTest, BeginsClosedAndConnectsOnlyWhenAsked) {
    const auto source = makeSource();
    EXPECT_EQ(source->readyState(), EventSourceState::closed);
    EXPECT_EQ(source->retryTime(), 3000);
    EXPECT_EQ(source->lastEventId(), std::nullopt);
    EXPECT_TRUE(source->events().empty());
    EXPECT_TRUE(sessions.sessions().empty());

    source->connect();
    EXPECT_EQ(source->readyState(), EventSourceState::connecting);
    EXPECT_TRUE(task().isResumed());
    EXPECT_EQ(task().request(), request());
}

TEST_F(EventSourceTest, AsksForAnUnlimitedEventStream) {
    const auto source = makeSource({{"accept", "text/plain"}, {"Cache-Control", "x"}, {"A", "b"}});
    source->connect("41");
    const auto& configuration = session().configuration();
    EXPECT_EQ(configuration.timeoutIntervalForRequest, 2147483647.0);
    EXPECT_EQ(configuration.timeoutIntervalForResource, 2147483647.0);
    const std::map<std::string, std::string> expected = {
        {"A", "b"}, {"Accept", "text/event-stream"}, {"Cache-Control", "no-cache"}, {"Last-Event-Id", "41"}};
    EXPECT_EQ(configuration.httpAdditionalHeaders, expected);
    EXPECT_EQ(source->headers().at("accept"), "text/plain");
    EXPECT_EQ(source->lastEventId(), std::nullopt);

    source->connect();
    EXPECT_EQ(session().configuration().httpAdditionalHeaders.count("Last-Event-Id"), 0U);
}

TEST_F(EventSourceTest, OpensOnAnyStatusAndCallsBackOnTheMainQueueOnly) {
    const auto source = makeSource();
    source->connect();
    task().deliverStatus(401);
    EXPECT_EQ(task().disposition(), platform::URLSessionDelegate::ResponseDisposition::allow);
    EXPECT_EQ(source->readyState(), EventSourceState::open);
    task().deliverData("data: a\n\n");
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(taken(), (Strings{"open", "message - message a"}));
}

TEST_F(EventSourceTest, SendsEachEventWhereItBelongs) {
    const std::vector<std::pair<std::string, Strings>> rows = {
        {"id: 1\ndata: a\n\n", {"message 1 message a"}},
        {"id: 1\n\n", {"message 1 message -"}},
        {"foo: bar\n\n", {"message - message -"}},
        {"event: message\ndata: x\n\n", {"message - message x", "listener - message x"}},
        {"event: update\nid: 2\ndata: x\n\n", {"updates 2 update x"}},
        {"event: other\ndata: x\n\n", {}},
        {"retry: 2x\n\n", {}},
        {"retry: 10\ndata\n\n", {"message - message "}},
        {"retry: 10\nevent: update\n\n", {"updates - update -"}},
    };
    const auto source = openSource();
    source->addEventListener("update", listener("former"));
    source->addEventListener("update", listener("updates"));
    source->addEventListener("message", listener("listener"));
    for (const auto& [stream, calls] : rows) {
        task().deliverData(stream);
        EXPECT_EQ(taken(), calls) << stream;
    }
    EXPECT_EQ(source->events().size(), 2U);
}

TEST_F(EventSourceTest, LooksUpListenersWhenTheEventArrivesAndTheMessageCallbackWhenItIsDue) {
    const auto source = openSource();
    source->addEventListener("update", listener("updates"));
    task().deliverData("event: update\n\ndata: a\n\n");
    source->removeEventListener("update");
    source->onMessage(listener("new"));
    EXPECT_EQ(taken(), (Strings{"updates - update -", "new - message a"}));
    task().deliverData("event: update\n\n");
    EXPECT_TRUE(taken().empty());
}

TEST_F(EventSourceTest, KeepsIdAndRetryTimeOfTheLatestEventAlone) {
    const auto source = openSource();
    task().deliverData("id: 7\nretry: 100\n\n");
    EXPECT_EQ(source->lastEventId(), "7");
    EXPECT_EQ(source->retryTime(), 100);
    task().deliverData("data: b\n\n");
    EXPECT_EQ(source->lastEventId(), std::nullopt);
    EXPECT_EQ(source->retryTime(), 3000);
    task().deliverData("retry: 100\n\n");
    EXPECT_EQ(source->retryTime(), 100);
    task().deliverData("retry: 2x\n\n");
    EXPECT_EQ(source->retryTime(), 3000);
}

TEST_F(EventSourceTest, DropsDataBeforeTheHeadAndBehindADisconnect) {
    const auto source = makeSource();
    source->connect();
    task().deliverData("data: early\n\n");
    task().deliverStatus(200);
    source->disconnect();
    EXPECT_TRUE(task().isCancelled());
    EXPECT_EQ(source->readyState(), EventSourceState::closed);
    source->didReceiveData(task(), "data: late\n\n");
    EXPECT_EQ(taken(), (Strings{"open", "complete 200 no -"}));
}

TEST_F(EventSourceTest, CompletesWithTheStatusOrElseWithTheError) {
    const std::vector<std::pair<int, std::string>> rows = {
        {200, "complete 200 no -"},  {201, "complete 201 yes -"}, {204, "complete 204 yes -"},
        {299, "complete 299 yes -"}, {301, "complete 301 no -"},  {500, "complete 500 no -"}};
    const platform::URLError refused{platform::URLError::Code::cannotConnectToHost, "Refused."};
    for (const auto& [status, call] : rows) {
        const auto source = makeSource();
        source->connect();
        task().deliverStatus(status);
        task().complete(refused);
        EXPECT_TRUE(source->taskError()) << "for those who ask why the answer is not whole";
        EXPECT_EQ(taken(), (Strings{"open", call}));
        EXPECT_EQ(source->readyState(), EventSourceState::open);
    }
    const auto source = makeSource();
    source->connect();
    task().complete(refused);
    source->connect();
    task().complete();
    EXPECT_FALSE(source->taskError());
    EXPECT_EQ(taken(), (Strings{"complete - - Refused.", "complete - - -"}));
}

TEST_F(EventSourceTest, CompletesBehindWhatTheCallbacksOfItsEventsQueue) {
    const auto source = openSource();
    source->onMessage([this](const Text&, const Text&, const Text& data) {
        queue.async([this, data] { log.push_back("behind " + shown(data)); });
    });
    task().deliverData("data: a\n\n");
    task().complete();
    EXPECT_EQ(taken(), (Strings{"behind a", "complete 200 no -"}));
}

TEST_F(EventSourceTest, PutsItsHeadersOnARedirectedRequest) {
    const auto source = makeSource({{"Authorization", "Bearer k"}, {"X", "y"}});
    source->connect("1");
    for (const char* method : {"POST", "GET"}) {
        platform::URLRequest proposed;
        proposed.url = "http://127.0.0.1/there";
        proposed.httpMethod = method;
        if (proposed.httpMethod == "POST")
            proposed.httpBody = "{}";
        proposed.headers = {{"authorization", "none"}, {"Content-Type", "application/json"}};
        task().redirect({}, proposed);
        const std::optional<platform::URLRequest> answer = task().redirectAnswers().back();
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->value("Authorization"), "Bearer k");
        EXPECT_EQ(answer->value("X"), "y");
        // Apart from its headers it is followed as proposed.
        proposed.setValue("Bearer k", "Authorization");
        proposed.setValue("y", "X");
        EXPECT_EQ(answer, proposed);
    }
}

TEST_F(EventSourceTest, FeedsBothConnectionsOfADoubleConnectToTheSecondParser) {
    const auto source = openSource();
    platform::FakeDataTask& first = task();
    first.deliverData("data: lost");
    source->connect();
    EXPECT_FALSE(first.isCancelled());
    task().deliverStatus(200);
    first.deliverData("data: a");
    task().deliverData("\n\n");
    EXPECT_EQ(taken(), (Strings{"open", "message - message a"}));
}

TEST_F(EventSourceTest, BreaksOffWhatDoesNotEndAndKeepsWhatHasCome) {
    const auto source = openSource();
    task().deliverData("data: a\n\ndata: ");
    const std::string chunk(limits::kMegabyte, 'x');
    for (std::size_t sent = 0; sent < limits::kStreamBlock - chunk.size(); sent += chunk.size())
        task().deliverData(chunk);
    EXPECT_FALSE(task().isCancelled());
    task().deliverData(chunk);
    EXPECT_TRUE(task().isCancelled());
    EXPECT_EQ(taken(), (Strings{"message - message a", "complete 200 no -"}));
    EXPECT_EQ(source->taskError().value_or(platform::URLError()).code, platform::URLError::Code::tooLarge);
    source->connect();
    task().deliverStatus(200);
    task().deliverData("data: b\n\n");
    EXPECT_EQ(taken(), (Strings{"open", "message - message b"})) << "the next stream begins anew";
    task().complete();
    EXPECT_FALSE(source->taskError());
}

TEST_F(EventSourceTest, BreaksOffWhatComesFasterThanTheMainThreadTakesIt) {
    const auto source = openSource();
    std::size_t count = 0;
    source->onMessage([&](const Text&, const Text&, const Text&) { ++count; });
    const std::string events = "data: " + std::string(limits::kMegabyte, 'x') + "\n\n";
    constexpr std::size_t kMostRounds = limits::kWaitingEvents / limits::kMegabyte + 10;
    const auto deliverAll = [&](bool takesThem) {
        std::size_t rounds = 0;
        for (; rounds < kMostRounds && !task().isCancelled(); ++rounds) {
            task().deliverData(events);
            if (takesThem)
                queue.runUntilIdle();
        }
        return rounds;
    };
    EXPECT_EQ(deliverAll(true), kMostRounds);
    EXPECT_LT(deliverAll(false), kMostRounds);
    EXPECT_EQ(source->taskError().value_or(platform::URLError()).code, platform::URLError::Code::tooLarge);
    const std::size_t before = count;
    queue.runUntilIdle();
    EXPECT_GT(count, before);
}

TEST_F(EventSourceTest, DropsCallbacksThatAreDueWhenItHasGone) {
    auto source = openSource();
    task().deliverData("data: a\n\ndata: b\n\n");
    task().complete();
    const std::weak_ptr<EventSource> weak = source;
    source->onMessage([&](const Text&, const Text&, const Text& data) {
        log.push_back(shown(data));
        source->disconnect();
        source->onMessage(nullptr);
        source = nullptr;
    });
    EXPECT_EQ(taken(), Strings{"a"});
    EXPECT_TRUE(weak.expired());
}

} // namespace
} // namespace quillmoth
