#pragma once

#include "EventSource/EventSource.h"
#include "Platform/Curl/CurlURLSessions.h"
#include "Platform/Posix/SerialOperationQueues.h"
#include "tests/support/RunLoop.h"
#include "tests/support/ScriptedChatServer.h"

#include <gtest/gtest.h>

#include <mutex>

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

/// A real server, the real network, and the main thread's queue.
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
                          mainQueue.async([&, whole = Answer{data, response, error}] { answer = whole; });
                      })
            ->resume();
        EXPECT_TRUE(mainQueue.runUntil([&] { return answer.has_value(); }));
        return answer.value_or(Answer());
    }

    platform::SerialOperationQueues queues;
    RunLoop mainQueue;
    ScriptedChatServer server;
    std::unique_ptr<platform::CurlURLSessions> sessions = std::make_unique<platform::CurlURLSessions>(queues);
};

} // namespace quillmoth::test
