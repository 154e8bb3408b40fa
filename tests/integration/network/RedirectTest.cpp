#include "tests/integration/network/NetworkTest.h"

namespace quillmoth::test {

namespace {

using Redirect = NetworkTest;

TEST_F(Redirect, TurnsPostIntoGetWhereBrowsersDo) {
    const std::tuple<int, const char*, const char*, bool> rows[] = {
        {301, "POST", "GET", false}, {302, "POST", "GET", false}, {303, "POST", "GET", false},
        {307, "POST", "POST", true}, {308, "POST", "POST", true}, {301, "PUT", "PUT", true},
        {303, "PUT", "GET", false},  {302, "GET", "GET", true},
    };
    server.answer("/there", jsonAnswer(200, "there"));
    for (const auto& [status, method, methodThen, keepsBody] : rows) {
        SCOPED_TRACE(std::to_string(status) + method);
        server.answer("/here", redirectAnswer(status, "there?x=1"));
        auto request = postRequest(server.url("/here"));
        request.httpMethod = method;
        if (request.httpMethod == "GET")
            request.httpBody.reset();
        const Answer answer = fetch(request);
        EXPECT_EQ(answer.data, "there");
        ASSERT_TRUE(answer.response);
        EXPECT_EQ(answer.response->url, server.url("/there?x=1"));
        const ScriptedRequest followed = server.requests().back();
        EXPECT_EQ(followed.method, methodThen);
        EXPECT_EQ(followed.body, keepsBody ? request.httpBody.value_or("") : "");
        EXPECT_EQ(followed.header("Content-Type").has_value(), keepsBody);
    }
    EXPECT_EQ(server.connectionCount(), 1);
}

TEST_F(Redirect, TakesNeitherKeyNorConversationToAnotherServer) {
    ScriptedChatServer other;
    other.answer("/there", jsonAnswer(200, "other"));
    server.answer("/there", jsonAnswer(200, "same"));
    const auto withKey = [](platform::URLRequest request) {
        request.setValue("Bearer secret", "authorization");
        return request;
    };
    platform::URLRequest bare;
    bare.url = server.url("/here");
    server.answer("/here", redirectAnswer(307, "/there"));
    EXPECT_EQ(fetch(withKey(postRequest(server.url("/here")))).data, "same");
    EXPECT_EQ(server.requests().back().header("Authorization"), "Bearer secret");

    const auto session =
        sessions->makeSession({.httpAdditionalHeaders = {{"AUTHORIZATION", "Bearer s"}}}, nullptr, nullptr);
    for (const int status : {301, 303, 307}) {
        server.answer("/here", redirectAnswer(status, other.url("/there")));
        for (const Answer& answer :
             {fetch(postRequest(server.url("/here"))), fetch(withKey(bare)), fetch(*session, bare)}) {
            ASSERT_TRUE(answer.error) << status;
            EXPECT_EQ(answer.error->code, Code::redirectRefused);
            EXPECT_EQ(answer.error->localizedDescription,
                      "The server 127.0.0.1:" + std::to_string(server.port()) + " sends requests on to " +
                          other.baseURL() +
                          ". Nothing of yours was sent there. If you trust it, set its address in Settings.");
            EXPECT_FALSE(answer.data);
        }
    }
    EXPECT_EQ(other.connectionCount(), 0);
    bare.setValue("chat.example", "host");
    EXPECT_EQ(fetch(bare).data, "other") << "what holds nothing of the user's is led on";
    EXPECT_EQ(other.requests().back().header("Host"), "127.0.0.1:" + std::to_string(other.port()));
}

TEST_F(Redirect, FollowsTwentyAndNoMoreAndToWebServersOnly) {
    const std::pair<const char*, Code> rows[] = {{"/here", Code::tooManyRedirects},
                                                 {"file:///etc/hostname", Code::badURL},
                                                 {"ftp://127.0.0.1/", Code::badURL},
                                                 {"mailto:a@b.c", Code::badURL},
                                                 {"http://", Code::badURL}};
    for (const auto& [location, code] : rows) {
        server.answer("/here", redirectAnswer(302, location));
        const Answer answer = fetch(postRequest(server.url("/here")));
        EXPECT_EQ(errorCode(answer.error), code) << location;
        EXPECT_FALSE(answer.data || answer.response) << location;
    }
    EXPECT_EQ(server.requests().size(), 21U + 4U);
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

TEST_F(Redirect, IsTheAnswerWhereTheDelegateStays) {
    for (const char* body : {"moved", ""}) {
        ScriptedAnswer answer = jsonAnswer(302, body);
        answer.headers.emplace_back("Location", "/there");
        server.answer("/here", answer);
        const auto delegate = std::make_shared<Recorder>();
        delegate->followsRedirects = false;
        sessions->makeSession({}, delegate, nullptr)->dataTask(postRequest(server.url("/here")))->resume();
        delegate->done.wait();
        EXPECT_EQ(delegate->status, 302);
        EXPECT_EQ(delegate->body, body);
        EXPECT_FALSE(delegate->error);
    }
    for (const ScriptedRequest& request : server.requests())
        EXPECT_EQ(request.path, "/here");
}

} // namespace

} // namespace quillmoth::test
