#pragma once

#include "Platform/Curl/CurlURLSessions.h"
#include "Platform/Posix/SerialOperationQueues.h"
#include "tests/support/RunLoop.h"
#include "tests/support/ScriptedChatServer.h"

#include <gtest/gtest.h>

namespace quillmoth::test {

using Code = platform::URLError::Code;

inline platform::URLRequest postRequest(const std::string& url) {
    platform::URLRequest request;
    request.url = url;
    request.httpMethod = "POST";
    request.httpBody = R"({"stream":true})";
    request.headers = {{"Content-Type", "application/json"}};
    return request;
}

/// Writes down what it is told, and lets the test wait.
class Recorder final : public platform::URLSessionDelegate {
public:
    void didReceiveResponse(platform::URLSessionDataTask& /*task*/, const platform::URLResponse& response,
                            const std::function<void(ResponseDisposition)>& completionHandler) override {
        status = response.statusCode.value_or(0);
        if (answersHead)
            completionHandler(disposition);
        else
            heldHandler = completionHandler;
        headReceived.release();
    }

    void didReceiveData(platform::URLSessionDataTask& /*task*/, std::string_view data) override {
        body.append(data);
        dataReceived.release();
        if (gate)
            gate->wait();
    }

    void didCompleteWithError(platform::URLSessionDataTask& task,
                              const std::optional<platform::URLError>& itsError) override {
        ++completions;
        error = itsError;
        hadResponse = task.response().has_value();
        done.release();
    }

    void willPerformHTTPRedirection(
        platform::URLSessionDataTask& /*task*/, const platform::URLResponse& /*response*/,
        const platform::URLRequest& newRequest,
        const std::function<void(std::optional<platform::URLRequest>)>& completionHandler) override {
        completionHandler(followsRedirects ? std::optional(newRequest) : std::nullopt);
    }

    bool followsRedirects = true;
    bool answersHead = true;
    ResponseDisposition disposition = ResponseDisposition::allow;
    std::shared_ptr<Latch> gate;

    int status = 0;
    std::string body;
    int completions = 0;
    std::optional<platform::URLError> error;
    bool hadResponse = false;
    std::function<void(ResponseDisposition)> heldHandler;
    Latch headReceived;
    Latch dataReceived;
    Latch done;
};

inline Code errorCode(const std::optional<platform::URLError>& error) {
    return error.value_or(platform::URLError()).code;
}

/// A real server, the real network, and the main thread's queue, which waits by running.
class NetworkTest : public testing::Test {
protected:
    struct Answer {
        std::optional<std::string> data;
        std::optional<platform::URLResponse> response;
        std::optional<platform::URLError> error;
    };

    /// Makes a one-shot request in the shared session and waits for its end.
    Answer fetch(const platform::URLRequest& request) { return fetch(*sessions->sharedSession(), request); }

    Answer fetch(platform::URLSession& session, const platform::URLRequest& request) {
        std::optional<Answer> answer;
        session
            .dataTask(request,
                      [&](auto data, auto response, auto error) {
                          loop.async([&, whole = Answer{data, response, error}] { answer = whole; });
                      })
            ->resume();
        EXPECT_TRUE(loop.runUntil([&] { return answer.has_value(); }));
        return answer.value_or(Answer());
    }

    // The queues' threads use the loop until they have ended.
    RunLoop loop;
    platform::SerialOperationQueues queues;
    ScriptedChatServer server;
    std::unique_ptr<platform::CurlURLSessions> sessions = std::make_unique<platform::CurlURLSessions>(queues);
};

} // namespace quillmoth::test
