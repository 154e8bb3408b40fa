#include "Foundation/ASCII.h"
#include "Foundation/Limits.h"
#include "tests/integration/ScopedVariable.h"
#include "tests/integration/network/NetworkTest.h"

#include <numeric>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

namespace quillmoth::test {

namespace {

class URLSessionTest : public NetworkTest {
protected:
    std::shared_ptr<platform::URLSession>
    makeSession(const platform::URLSessionConfiguration& configuration = {}) {
        return sessions->makeSession(configuration, recorder, nullptr);
    }

    /// Starts a request that the recorder hears of.
    std::shared_ptr<platform::URLSessionDataTask> start(const std::string& path = "/") {
        auto task = makeSession()->dataTask(postRequest(server.url(path)));
        task->resume();
        return task;
    }

    std::shared_ptr<Recorder> recorder = std::make_shared<Recorder>();
};

TEST_F(URLSessionTest, PutsItsHeadersBehindThoseOfTheRequest) {
    server.answer("/", jsonAnswer(200, "{}"));
    const auto session = sessions->makeSession(
        {.httpAdditionalHeaders = {{"X-Both", "session"}, {"X-Session", "s"}, {"X-Empty", ""}}}, nullptr,
        nullptr);
    auto request = postRequest(server.url("/"));
    request.setValue("request", "x-both");
    // As from a key that was pasted with its line end, and from one that is missing.
    request.setValue("Bearer k\r\nX-Smuggled: 1\n", "Authorization");
    request.setValue("Bearer ", "X-Missing");
    request.setValue("1", "Not A Name");
    EXPECT_EQ(fetch(*session, request).data, "{}");
    const ScriptedRequest sent = server.requests().at(0);
    EXPECT_EQ(sent.header("X-Both"), "request");
    EXPECT_EQ(
        std::count_if(sent.headers.begin(), sent.headers.end(),
                      [](const auto& header) { return equalIgnoringASCIICase(header.first, "X-Both"); }),
        1);
    EXPECT_EQ(sent.header("X-Session"), "s");
    EXPECT_EQ(sent.header("X-Empty"), "");
    EXPECT_EQ(sent.header("Authorization"), "Bearer k  X-Smuggled: 1");
    EXPECT_EQ(sent.header("X-Missing"), "Bearer") << "a blank at the end is an error in HTTP/2";
    EXPECT_EQ(sent.header("X-Smuggled"), std::nullopt);
    EXPECT_EQ(sent.header("Not A Name"), std::nullopt);
    EXPECT_EQ(sent.header("Expect"), std::nullopt);
    EXPECT_TRUE(sent.header("User-Agent").value_or("").starts_with("Quillmoth/"));
}

TEST_F(URLSessionTest, SendsEachMethodAsItIsOverOneConnectionOfAllSessions) {
    server.answer("/", jsonAnswer(204, ""));
    for (const char* method : {"GET", "POST", "PUT", "DELETE", "PATCH"}) {
        for (const bool hasBody : {false, true}) {
            platform::URLRequest request;
            request.url = server.url("/");
            request.httpMethod = method;
            if (hasBody)
                request.httpBody = std::string("a\0b", 3);
            const Answer answer = fetch(*sessions->makeSession({}, nullptr, nullptr), request);
            ASSERT_TRUE(answer.response);
            EXPECT_EQ(answer.response->statusCode, 204);
            EXPECT_EQ(server.requests().back().method, method);
            EXPECT_EQ(server.requests().back().body, request.httpBody.value_or(""));
            EXPECT_EQ(server.requests().back().header("Content-Type"), std::nullopt);
        }
    }
    fetch(postRequest(server.url("/")));
    EXPECT_EQ(server.connectionCount(), 1);
}

TEST_F(URLSessionTest, TellsWhatWentWrongInASentenceWithoutSecrets) {
    server.answer("/silent", silentAnswer());
    ScriptedAnswer cut = jsonAnswer(200, "{}");
    cut.steps = {Send{"{"}, Reset{}};
    cut.framing = Framing::chunked;
    server.answer("/cut", cut);
    const std::string address = "127.0.0.1:" + std::to_string(server.port());
    const std::string invalid = "The address of the server is not valid.";
    const std::tuple<std::string, Code, std::string> rows[] = {
        {"http://nowhere.invalid/", Code::cannotFindHost, "Could not find the server nowhere.invalid."},
        {"http://127.0.0.1:1/", Code::cannotConnectToHost, "Could not connect to the server 127.0.0.1:1."},
        {"https://" + address + "/", Code::secureConnectionFailed,
         "A secure connection to the server " + address + " could not be made."},
        {server.url("/silent"), Code::timedOut, "The server " + address + " took too long to answer."},
        {server.url("/cut"), Code::connectionLost, "The connection to the server " + address + " was lost."},
        {"", Code::badURL, invalid},
        {"http://", Code::badURL, invalid},
        {"file:///etc/hostname", Code::badURL, invalid},
    };
    for (const auto& [url, code, sentence] : rows) {
        auto request = postRequest(url);
        request.timeoutInterval = code == Code::timedOut ? 0.05 : 60;
        const Answer answer = fetch(request);
        ASSERT_TRUE(answer.error) << url;
        EXPECT_EQ(answer.error->code, code) << url;
        EXPECT_EQ(answer.error->localizedDescription, sentence);
        EXPECT_FALSE(answer.data) << url;
        EXPECT_EQ(answer.response.has_value(), code == Code::connectionLost) << url;
    }
}

TEST_F(URLSessionTest, LimitsTheLifeOfATaskThatKeepsReceiving) {
    ScriptedAnswer answer = eventStream({"data: a\n\n"});
    answer.steps.emplace_back(WaitForClient{});
    server.answer("/", answer);
    const auto session = makeSession({.timeoutIntervalForResource = 0.1, .httpAdditionalHeaders = {}});
    session->dataTask(postRequest(server.url("/")))->resume();
    recorder->done.wait();
    EXPECT_EQ(errorCode(recorder->error), Code::timedOut);
    EXPECT_EQ(recorder->body, "data: a\n\n");
    EXPECT_TRUE(recorder->hadResponse);
}

TEST_F(URLSessionTest, NoticesWithinAMinuteThatItsPeerHasGone) {
    server.answer("/", silentAnswer());
    start();
    ASSERT_TRUE(server.waitForRequests(1));
    const auto isClients = [this](int descriptor) {
        sockaddr_in peer{};
        socklen_t size = sizeof peer;
        return ::getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &size) == 0 &&
               peer.sin_family == AF_INET && ntohs(peer.sin_port) == server.port();
    };
    int client = 0;
    while (client < 1024 && !isClients(client))
        ++client;
    const auto option = [client](int level, int name) {
        int value = -1;
        socklen_t size = sizeof value;
        ::getsockopt(client, level, name, &value, &size);
        return value;
    };
    EXPECT_EQ(option(SOL_SOCKET, SO_KEEPALIVE), 1);
    EXPECT_LE(option(IPPROTO_TCP, TCP_KEEPIDLE) +
                  option(IPPROTO_TCP, TCP_KEEPINTVL) * option(IPPROTO_TCP, TCP_KEEPCNT),
              60);
    EXPECT_GT(option(IPPROTO_TCP, TCP_USER_TIMEOUT), 0);
    EXPECT_LE(option(IPPROTO_TCP, TCP_USER_TIMEOUT), 60000);
}

TEST_F(URLSessionTest, HoldsTheBodyBackUntilTheDelegateHasAllowedIt) {
    server.answer("/", jsonAnswer(200, "body"));
    recorder->answersHead = false;
    start();
    recorder->headReceived.wait();
    // Another exchange goes all the way meanwhile.
    EXPECT_EQ(fetch(postRequest(server.url("/"))).data, "body");
    EXPECT_TRUE(recorder->body.empty());
    EXPECT_EQ(recorder->completions, 0);
    recorder->heldHandler(platform::URLSessionDelegate::ResponseDisposition::allow);
    recorder->done.wait();
    EXPECT_EQ(recorder->body, "body");
    EXPECT_FALSE(recorder->error);
    recorder = std::make_shared<Recorder>();
    recorder->disposition = platform::URLSessionDelegate::ResponseDisposition::cancel;
    start();
    recorder->done.wait();
    EXPECT_TRUE(recorder->body.empty());
    EXPECT_EQ(errorCode(recorder->error), Code::cancelled);
}

TEST_F(URLSessionTest, LetsTheServerWaitForASlowDelegateAndLosesNothing) {
    std::string large(6 << 20, '\0');
    std::iota(large.begin(), large.end(), '\0');
    server.answer("/", jsonAnswer(200, large));
    recorder->gate = makeLatch();
    start();
    recorder->dataReceived.wait();
    // The delegate is stuck; other tasks are not.
    EXPECT_EQ(fetch(postRequest(server.url("/"))).data, large);
    recorder->gate->release();
    recorder->done.wait();
    EXPECT_FALSE(recorder->error);
    EXPECT_TRUE(recorder->body == large);
}

TEST_F(URLSessionTest, EndsAnAnswerThatIsLargerThanItMayBe) {
    const auto answerOf = [](std::size_t headers, std::size_t headerBytes, std::size_t body) {
        ScriptedAnswer answer{.steps = {Send{std::string(body, 'x')}, WaitForClient{}}};
        for (std::size_t count = 0; count < headers; ++count)
            answer.headers.emplace_back("X-" + std::to_string(count), std::string(headerBytes, 'y'));
        return answer;
    };
    constexpr std::size_t kLargest = 4000;
    const std::tuple<const char*, ScriptedAnswer, const char*> rows[] = {
        {"/body", answerOf(1, 1, kLargest + 1), "sent more than 3 KB"},
        {"/headers", answerOf(limits::kHeaderLines + 1, 1, 1), "sent headers without end"},
        {"/large-headers", answerOf(3, limits::kHeaders / 3, 1), "sent headers without end"},
        // That line is the library's to refuse.
        {"/line", answerOf(1, 4 * limits::kHeaders, 1), "failed"},
    };
    int ended = 0;
    for (const auto& [path, answer, words] : rows) {
        server.answer(path, answer);
        auto request = postRequest(server.url(path));
        request.largestAnswer = kLargest;
        const Answer given = fetch(request);
        EXPECT_NE(given.error.value_or(platform::URLError()).localizedDescription.find(words),
                  std::string::npos)
            << path << ": " << given.error.value_or(platform::URLError()).localizedDescription;
        EXPECT_FALSE(given.data);
        EXPECT_TRUE(server.waitForEndedConnections(++ended)) << path;
    }
    server.answer("/fits", jsonAnswer(200, std::string(kLargest, 'x')));
    auto request = postRequest(server.url("/fits"));
    request.largestAnswer = kLargest;
    EXPECT_EQ(fetch(request).data.value_or("").size(), kLargest);
}

TEST_F(URLSessionTest, CompletesEachCancelledTaskOnceWhateverItsState) {
    server.answer("/silent", silentAnswer());
    server.answer("/", jsonAnswer(200, "{}"));
    const auto session = makeSession();
    const auto suspended = session->dataTask(postRequest(server.url("/silent")));
    suspended->cancel();
    suspended->cancel();
    suspended->resume();
    recorder->done.wait();
    EXPECT_EQ(recorder->completions, 1);
    EXPECT_EQ(server.requests().size(), 0U);

    recorder = std::make_shared<Recorder>();
    const auto running = makeSession();
    running->dataTask(postRequest(server.url("/silent")))->resume();
    ASSERT_TRUE(server.waitForRequests(1));
    running->invalidateAndCancel();
    running->invalidateAndCancel();
    recorder->done.wait();
    EXPECT_EQ(errorCode(recorder->error), Code::cancelled);
    EXPECT_FALSE(recorder->hadResponse);
    EXPECT_TRUE(server.waitForEndedConnections(1));

    EXPECT_EQ(errorCode(fetch(*running, postRequest(server.url("/"))).error), Code::cancelled);

    recorder = std::make_shared<Recorder>();
    const auto finished = start();
    recorder->done.wait();
    finished->cancel();
    EXPECT_EQ(fetch(postRequest(server.url("/"))).data, "{}");
    EXPECT_EQ(recorder->completions, 1);
    EXPECT_FALSE(recorder->error);
}

TEST_F(URLSessionTest, CompletesRunningTasksWhenTheNetworkGoes) {
    server.answer("/silent", silentAnswer());
    const auto session = makeSession();
    const auto task = session->dataTask(postRequest(server.url("/silent")));
    task->resume();
    std::optional<platform::URLError> error;
    Latch shared;
    sessions->sharedSession()
        ->dataTask(postRequest(server.url("/silent")),
                   [&](auto, auto, auto itsError) {
                       error = itsError;
                       shared.release();
                   })
        ->resume();
    ASSERT_TRUE(server.waitForRequests(2));
    sessions = nullptr;
    recorder->done.wait();
    shared.wait();
    EXPECT_EQ(errorCode(recorder->error), Code::cancelled);
    EXPECT_EQ(errorCode(error), Code::cancelled);
    // What outlives the network does nothing any more.
    task->cancel();
    session->dataTask(postRequest(server.url("/silent")))->resume();
}

TEST_F(URLSessionTest, GoesThroughTheProxyOfTheEnvironment) {
    server.answer("/v1", jsonAnswer(200, "through"));
    {
        const ScopedVariable proxy("http_proxy", server.baseURL());
        EXPECT_EQ(fetch(postRequest("http://chat.invalid/v1")).data, "through");
        EXPECT_EQ(server.requests().at(0).target, "http://chat.invalid/v1");
        const ScopedVariable exception("no_proxy", "chat.invalid");
        const Answer direct = fetch(postRequest("http://chat.invalid/v1"));
        EXPECT_EQ(errorCode(direct.error), Code::cannotFindHost);
    }
    const ScopedVariable dead("http_proxy", "http://127.0.0.1:1");
    const Answer answer = fetch(postRequest("http://chat.invalid/v1"));
    EXPECT_EQ(answer.error.value_or(platform::URLError()).localizedDescription,
              "Could not connect to the proxy to the server chat.invalid.");
    EXPECT_EQ(fetch(postRequest(server.url("/v1"))).data, "through") << "what is for this machine stays here";
}

TEST_F(URLSessionTest, GoesToNoPrivateAddressWhereItIsForPublicOnesOnly) {
    server.answer("/picture", jsonAnswer(200, "private"));
    platform::URLRequest request;
    request.url = server.url("/picture");
    EXPECT_EQ(fetch(request).data, "private");
    const int connections = server.connectionCount();
    request.publicAddressesOnly = true;
    // By its address, by its name, and over the connection that is open.
    for (const std::string& url :
         {server.url("/picture"), "http://localhost:" + std::to_string(server.port()) + "/picture"}) {
        request.url = url;
        const Answer answer = fetch(request);
        EXPECT_EQ(errorCode(answer.error), Code::privateAddress);
        EXPECT_FALSE(answer.data);
    }
    EXPECT_EQ(server.connectionCount(), connections);
    EXPECT_EQ(server.requests().size(), 1U);
}

} // namespace

} // namespace quillmoth::test
