#include "EventSource/EventSource.h"

#include "tests/unit/eventsource/Fakes.h"

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
    void TearDown() override {
        // A session keeps its delegate, which keeps the session.
        for (const auto& made : sessions.made)
            made->delegate = nullptr;
    }

    std::shared_ptr<EventSource> makeSource(EventSource::Headers headers = {{"Authorization", "Bearer k"}}) {
        auto source = EventSource::create(queue, sessions, queue, request(), std::move(headers));
        source->onOpen([this] { log.emplace_back("open"); });
        source->onMessage([this](const Text& id, const Text& event, const Text& data) {
            log.push_back("message " + shown(id) + " " + shown(event) + " " + shown(data));
        });
        source->onComplete([this](std::optional<int> status, std::optional<bool> reconnect,
                                  const std::optional<platform::URLError>& error) {
            log.push_back("complete " + (status ? std::to_string(*status) : "-") + " " +
                          (reconnect ? *reconnect ? "yes" : "no" : "-") + " " +
                          (error ? error->localizedDescription : "-"));
        });
        return source;
    }

    static platform::URLRequest request() {
        platform::URLRequest request;
        request.url = "http://127.0.0.1/stream";
        request.httpMethod = "POST";
        request.httpBody = "{}";
        return request;
    }

    EventSource::EventCallback listener(std::string name) {
        return [this, name = std::move(name)](const Text& id, const Text& event, const Text& data) {
            log.push_back(name + " " + shown(id) + " " + shown(event) + " " + shown(data));
        };
    }

    /// A source whose stream is open; what it called so far is forgotten.
    std::shared_ptr<EventSource> openSource() {
        auto source = makeSource();
        source->connect();
        session().respond(200);
        queue.runAll();
        log.clear();
        return source;
    }

    test::FakeSession& session() { return *sessions.made.back(); }

    Strings taken() {
        queue.runAll();
        return std::exchange(log, {});
    }

    test::StepQueue queue;
    test::FakeSessions sessions;
    Strings log;
};

TEST_F(EventSourceTest, BeginsClosedAndConnectsOnlyWhenAsked) {
    const auto source = makeSource();
    EXPECT_EQ(source->readyState(), EventSourceState::closed);
    EXPECT_EQ(source->retryTime(), 3000);
    EXPECT_EQ(source->lastEventId(), std::nullopt);
    EXPECT_TRUE(source->events().empty());
    EXPECT_TRUE(sessions.made.empty());

    source->connect();
    EXPECT_EQ(source->readyState(), EventSourceState::connecting);
    EXPECT_TRUE(session().task->resumed);
    EXPECT_EQ(session().task->request, request());
}

TEST_F(EventSourceTest, AsksForAnUnlimitedEventStream) {
    const auto source = makeSource({{"accept", "text/plain"}, {"Cache-Control", "x"}, {"A", "b"}});
    source->connect("41");
    const auto& configuration = session().configuration;
    EXPECT_EQ(configuration.timeoutIntervalForRequest, 2147483647.0);
    EXPECT_EQ(configuration.timeoutIntervalForResource, 2147483647.0);
    const std::map<std::string, std::string> expected = {
        {"A", "b"}, {"Accept", "text/event-stream"}, {"Cache-Control", "no-cache"}, {"Last-Event-Id", "41"}};
    EXPECT_EQ(configuration.httpAdditionalHeaders, expected);
    EXPECT_EQ(source->headers().at("accept"), "text/plain");
    EXPECT_EQ(source->lastEventId(), std::nullopt);

    source->connect();
    EXPECT_EQ(session().configuration.httpAdditionalHeaders.count("Last-Event-Id"), 0U);
}

TEST_F(EventSourceTest, OpensOnAnyStatusAndCallsBackOnTheMainQueueOnly) {
    const auto source = makeSource();
    source->connect();
    session().respond(401);
    EXPECT_EQ(session().disposition, platform::URLSessionDelegate::ResponseDisposition::allow);
    EXPECT_EQ(source->readyState(), EventSourceState::open);
    session().receive("data: a\n\n");
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
        {"retry: 10\ndata: x\n\n", {"message - message x"}},
    };
    const auto source = openSource();
    source->addEventListener("update", listener("former"));
    source->addEventListener("update", listener("updates"));
    source->addEventListener("message", listener("listener"));
    for (const auto& [stream, calls] : rows) {
        session().receive(stream);
        EXPECT_EQ(taken(), calls) << stream;
    }
    EXPECT_EQ(source->events().size(), 2U);
}

TEST_F(EventSourceTest, LooksUpListenersWhenTheEventArrivesAndTheMessageCallbackWhenItIsDue) {
    const auto source = openSource();
    source->addEventListener("update", listener("updates"));
    session().receive("event: update\n\ndata: a\n\n");
    source->removeEventListener("update");
    source->onMessage(listener("new"));
    EXPECT_EQ(taken(), (Strings{"updates - update -", "new - message a"}));
    session().receive("event: update\n\n");
    EXPECT_TRUE(taken().empty());
}

TEST_F(EventSourceTest, KeepsIdAndRetryTimeOfTheLatestEventAlone) {
    const auto source = openSource();
    session().receive("id: 7\nretry: 100\n\n");
    EXPECT_EQ(source->lastEventId(), "7");
    EXPECT_EQ(source->retryTime(), 100);
    session().receive("data: b\n\n");
    EXPECT_EQ(source->lastEventId(), std::nullopt);
    EXPECT_EQ(source->retryTime(), 3000);
    session().receive("retry: 100\n\n");
    EXPECT_EQ(source->retryTime(), 100);
    session().receive("retry: 2x\n\n");
    EXPECT_EQ(source->retryTime(), 3000);
}

TEST_F(EventSourceTest, DropsDataBeforeTheHeadAndBehindADisconnect) {
    const auto source = makeSource();
    source->connect();
    const auto first = sessions.made.back();
    const auto delegate = first->delegate;
    first->receive("data: early\n\n");
    first->respond(200);
    source->disconnect();
    EXPECT_TRUE(first->task->cancelled);
    EXPECT_EQ(source->readyState(), EventSourceState::closed);
    delegate->didReceiveData(*first->task, "data: late\n\n");
    delegate->didCompleteWithError(*first->task, platform::URLError{});
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
        session().respond(status);
        session().complete(refused);
        EXPECT_EQ(taken(), (Strings{"open", call}));
        EXPECT_EQ(source->readyState(), EventSourceState::open);
    }
    const auto source = makeSource();
    source->connect();
    session().complete(refused);
    session().complete();
    EXPECT_EQ(taken(), (Strings{"complete - - Refused.", "complete - - -"}));
}

TEST_F(EventSourceTest, PutsItsHeadersOnARedirectedRequest) {
    const auto source = makeSource({{"Authorization", "Bearer k"}, {"X", "y"}});
    source->connect("1");
    platform::URLRequest proposed = request();
    proposed.headers = {{"authorization", "none"}, {"Content-Type", "application/json"}};
    std::optional<platform::URLRequest> answer;
    session().delegate->willPerformHTTPRedirection(*session().task, {}, proposed,
                                                   [&](auto request) { answer = std::move(request); });
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->value("Authorization"), "Bearer k");
    EXPECT_EQ(answer->value("X"), "y");
    EXPECT_EQ(answer->value("Content-Type"), "application/json");
    EXPECT_EQ(answer->headers.size(), 3U);
    EXPECT_EQ(answer->httpMethod, "POST");
    EXPECT_EQ(answer->httpBody, "{}");
}

TEST_F(EventSourceTest, FeedsBothConnectionsOfADoubleConnectToTheSecondParser) {
    const auto source = openSource();
    sessions.made[0]->receive("data: lost");
    source->connect();
    EXPECT_FALSE(sessions.made[0]->task->cancelled);
    sessions.made[1]->respond(200);
    sessions.made[0]->receive("data: a");
    sessions.made[1]->receive("\n\n");
    EXPECT_EQ(taken(), (Strings{"open", "message - message a"}));
}

TEST_F(EventSourceTest, DropsCallbacksThatAreDueWhenItHasGone) {
    auto source = openSource();
    session().receive("data: a\n\ndata: b\n\n");
    session().complete();
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
