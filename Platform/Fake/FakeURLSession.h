#pragma once

#include "Platform/URLSession.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillmoth::platform {

class FakeURLSession;

/// A task that sends nothing: the test plays the server. What it delivers reaches the delegate as operations
/// on the session's delegate queue. After the completion nothing more is delivered. One thread.
class FakeDataTask final : public URLSessionDataTask, public std::enable_shared_from_this<FakeDataTask> {
public:
    FakeDataTask(std::weak_ptr<FakeURLSession> session, URLRequest request,
                 URLSession::CompletionHandler completionHandler);

    void resume() override;
    void cancel() override;

    [[nodiscard]] std::optional<URLResponse> response() const override { return response_; }

    // The server's side, for a session with a delegate
    void deliverResponse(const URLResponse& response);
    /// An HTTP head with this status, from the address of the request.
    void deliverStatus(int statusCode);
    void deliverData(std::string data);
    void redirect(const URLResponse& response, const URLRequest& newRequest);
    void complete(const std::optional<URLError>& error = std::nullopt);

    /// For a task with a completion handler: answers it within the call.
    void answer(std::optional<std::string> data, std::optional<URLResponse> response,
                std::optional<URLError> error);
    /// The same, with an HTTP answer.
    void answer(int statusCode, std::string data);

    // What the program did
    [[nodiscard]] const URLRequest& request() const { return request_; }

    /// The request with the session's additional headers, as it would go out.
    [[nodiscard]] URLRequest sentRequest() const;

    [[nodiscard]] bool isResumed() const { return isResumed_; }

    [[nodiscard]] bool isCancelled() const { return isCancelled_; }

    [[nodiscard]] bool isFinished() const { return isFinished_; }

    /// The delegate's answer to the head; absent before it.
    [[nodiscard]] std::optional<URLSessionDelegate::ResponseDisposition> disposition() const {
        return disposition_;
    }

    /// The delegate's answers to the redirects so far.
    [[nodiscard]] const std::vector<std::optional<URLRequest>>& redirectAnswers() const {
        return redirectAnswers_;
    }

private:
    template<class Call>
    void tellDelegate(Call call);
    void finish(const std::optional<URLError>& error);

    std::weak_ptr<FakeURLSession> session_;
    URLRequest request_;
    URLSession::CompletionHandler completionHandler_;
    std::optional<URLResponse> response_;
    std::optional<URLSessionDelegate::ResponseDisposition> disposition_;
    std::vector<std::optional<URLRequest>> redirectAnswers_;
    bool isResumed_ = false;
    bool isCancelled_ = false;
    bool isFinished_ = false;
};

/// A session that records its tasks.
class FakeURLSession final : public URLSession, public std::enable_shared_from_this<FakeURLSession> {
public:
    FakeURLSession(URLSessionConfiguration configuration, std::shared_ptr<URLSessionDelegate> delegate,
                   std::shared_ptr<OperationQueue> delegateQueue);

    std::shared_ptr<URLSessionDataTask> dataTask(const URLRequest& request) override;
    std::shared_ptr<URLSessionDataTask> dataTask(const URLRequest& request,
                                                 CompletionHandler completionHandler) override;
    void invalidateAndCancel() override;

    [[nodiscard]] const URLSessionConfiguration& configuration() const { return configuration_; }

    [[nodiscard]] const std::vector<std::shared_ptr<FakeDataTask>>& tasks() const { return tasks_; }

    /// The task made last; a fatal fault where there is none.
    [[nodiscard]] FakeDataTask& lastTask() const;

    [[nodiscard]] bool isInvalidated() const { return isInvalidated_; }

    [[nodiscard]] const std::shared_ptr<URLSessionDelegate>& delegate() const { return delegate_; }

    [[nodiscard]] const std::shared_ptr<OperationQueue>& delegateQueue() const { return delegateQueue_; }

    void releaseDelegate() { delegate_.reset(); }

private:
    URLSessionConfiguration configuration_;
    std::shared_ptr<URLSessionDelegate> delegate_;
    std::shared_ptr<OperationQueue> delegateQueue_;
    std::vector<std::shared_ptr<FakeDataTask>> tasks_;
    bool isInvalidated_ = false;
};

} // namespace quillmoth::platform
