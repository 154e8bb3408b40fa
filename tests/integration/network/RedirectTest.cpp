#include "tests/integration/network/NetworkTest.h"

namespace quillmoth::test {

namespace {

using Redirect = NetworkTest;

TEST_F(Redirect, TurnsPostIntoGetWhereBrowsersDo) {
    struct Row {
        int status;
        const char* method;
        const char* methodThen;
        bool keepsBody;
    };

    const std::vector<Row> rows = {
        {301, "POST", "GET", false}, {302, "POST", "GET", false}, {303, "POST", "GET", false},
        {307, "POST", "POST", true}, {308, "POST", "POST", true}, {301, "PUT", "PUT", true},
        {303, "PUT", "GET", false},  {302, "GET", "GET", true},
    };
    server.answer("/there", jsonAnswer(200, "there"));
    for (const Row& row : rows) {
        server.answer("/here", redirectAnswer(row.status, "there?x=1"));
        auto request = postRequest(server.url("/here"));
        request.httpMethod = row.method;
        if (request.httpMethod == "GET")
            request.httpBody.reset();
        const Answer answer = fetch(request);
        EXPECT_EQ(answer.data, "there") << row.status;
        ASSERT_TRUE(answer.response);
        EXPECT_EQ(answer.response->url, server.url("/there?x=1"));
        const ScriptedRequest followed = server.requests().back();
        EXPECT_EQ(followed.method, row.methodThen) << row.status << row.method;
        EXPECT_EQ(followed.body, row.keepsBody ? request.httpBody.value_or("") : "")
            << row.status << row.method;
        EXPECT_EQ(followed.header("Content-Type").has_value(), row.keepsBody) << row.status << row.method;
    }
    EXPECT_EQ(server.connectionCount(), 1);
}

TEST_F(Redirect, LeavesTheRequestsOwnCredentialsBehindAtAnotherServer) {
    ScriptedChatServer other;
    other.answer("/there", jsonAnswer(200, "other"));
    server.answer("/there", jsonAnswer(200, "same"));
    auto request = postRequest(server.url("/here"));
    request.setValue("Bearer secret", "authorization");
    request.setValue("chat.example", "host");
    server.answer("/here", redirectAnswer(307, "/there"));
    EXPECT_EQ(fetch(request).data, "same");
    EXPECT_EQ(server.requests().back().header("Authorization"), "Bearer secret");
    server.answer("/here", redirectAnswer(307, other.url("/there")));
    EXPECT_EQ(fetch(request).data, "other");
    EXPECT_EQ(other.requests().back().header("Authorization"), std::nullopt);
    EXPECT_EQ(other.requests().back().header("Host"), "127.0.0.1:" + std::to_string(other.port()));
    EXPECT_EQ(other.requests().back().header("Content-Type"), "application/json");
}

TEST_F(Redirect, FollowsTwentyAndNoMore) {
    server.answer("/loop", redirectAnswer(302, "/loop"));
    const Answer answer = fetch(postRequest(server.url("/loop")));
    ASSERT_TRUE(answer.error);
    EXPECT_EQ(answer.error->code, Code::tooManyRedirects);
    EXPECT_FALSE(answer.response);
    EXPECT_EQ(server.requests().size(), 21U);
}

TEST_F(Redirect, GoesToWebServersOnly) {
    for (const char* location : {"file:///etc/hostname", "ftp://127.0.0.1/", "mailto:a@b.c", "http://"}) {
        server.answer("/here", redirectAnswer(302, location));
        const Answer answer = fetch(postRequest(server.url("/here")));
        ASSERT_TRUE(answer.error) << location;
        EXPECT_EQ(answer.error->code, Code::badURL) << location;
        EXPECT_FALSE(answer.data) << location;
    }
}

TEST_F(Redirect, DoesNotWaitForTheEndOfABodyThatNobodyReads) {
    server.answer("/there", jsonAnswer(200, "there"));
    ScriptedAnswer endless = eventStream({std::string(200000, 'x')});
    endless.status = 302;
    endless.headers = {{"Location", "/there"}};
    endless.steps.emplace_back(WaitForClient{});
    server.answer("/big", endless);
    EXPECT_EQ(fetch(postRequest(server.url("/big"))).data, "there");
    endless.steps = {Send{"x"}, WaitForClient{}};
    server.answer("/slow", endless);
    EXPECT_EQ(fetch(postRequest(server.url("/slow"))).data, "there");
    EXPECT_TRUE(server.waitForEndedConnections(2));
}

/// Takes the redirect itself as the answer.
struct Staying final : platform::URLSessionDelegate {
    void didReceiveResponse(platform::URLSessionDataTask& /*task*/, const platform::URLResponse& response,
                            const std::function<void(ResponseDisposition)>& completionHandler) override {
        status = response.statusCode;
        completionHandler(ResponseDisposition::allow);
    }

    void didReceiveData(platform::URLSessionDataTask& /*task*/, std::string_view data) override {
        body += data;
    }

    void didCompleteWithError(platform::URLSessionDataTask& /*task*/,
                              const std::optional<platform::URLError>& error) override {
        failed = error.has_value();
        done.release();
    }

    void willPerformHTTPRedirection(
        platform::URLSessionDataTask& /*task*/, const platform::URLResponse& /*response*/,
        const platform::URLRequest& /*newRequest*/,
        const std::function<void(std::optional<platform::URLRequest>)>& handler) override {
        handler(std::nullopt);
    }

    std::optional<int> status;
    std::string body;
    bool failed = false;
    Latch done;
};

TEST_F(Redirect, IsTheAnswerWhereTheDelegateStays) {
    for (const char* body : {"moved", ""}) {
        ScriptedAnswer answer = jsonAnswer(302, body);
        answer.headers.emplace_back("Location", "/there");
        server.answer("/here", answer);
        const auto delegate = std::make_shared<Staying>();
        const auto session = sessions->makeSession({}, delegate, nullptr);
        session->dataTask(postRequest(server.url("/here")))->resume();
        delegate->done.wait();
        EXPECT_EQ(delegate->status, 302);
        EXPECT_EQ(delegate->body, body);
        EXPECT_FALSE(delegate->failed);
    }
    for (const ScriptedRequest& request : server.requests())
        EXPECT_EQ(request.path, "/here");
}

} // namespace

} // namespace quillmoth::test
