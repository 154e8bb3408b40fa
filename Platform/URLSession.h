#pragma once

#include "Platform/OperationQueue.h"
#include "Platform/URLRequest.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace quillmoth::platform {

/// One request and its answer. Made suspended; nothing is sent before resume. Any thread.
class URLSessionDataTask {
public:
    virtual ~URLSessionDataTask() = default;

    virtual void resume() = 0;

    /// Ends the task; its completion still comes, with a cancellation error.
    virtual void cancel() = 0;

    /// The head of the answer, once it has arrived.
    [[nodiscard]] virtual std::optional<URLResponse> response() const = 0;
};

/// What a session tells its owner. All calls come on the session's delegate queue, one at a time, in order,
/// and the completion is the last one for its task.
class URLSessionDelegate {
public:
    enum class ResponseDisposition { cancel = 0, allow = 1 };

    virtual ~URLSessionDelegate() = default;

    virtual void didReceiveResponse(URLSessionDataTask& task, const URLResponse& response,
                                    const std::function<void(ResponseDisposition)>& completionHandler) = 0;

    /// `data` is valid during the call only.
    virtual void didReceiveData(URLSessionDataTask& task, std::string_view data) = 0;

    virtual void didCompleteWithError(URLSessionDataTask& task, const std::optional<URLError>& error) = 0;

    /// Answered with the request to follow, or with none to take the redirect itself as the answer.
    virtual void
    willPerformHTTPRedirection(URLSessionDataTask& task, const URLResponse& response,
                               const URLRequest& newRequest,
                               const std::function<void(std::optional<URLRequest>)>& completionHandler) = 0;
};

struct URLSessionConfiguration {
    /// Longest wait for further data, in seconds.
    double timeoutIntervalForRequest = 60;
    /// Longest life of a whole task, in seconds.
    double timeoutIntervalForResource = 7 * 24 * 3600;
    /// Put on every request of the session; a header of the same name on the request itself wins.
    std::map<std::string, std::string> httpAdditionalHeaders{};
    /// File of the certificates that are trusted in place of the system's; empty for those.
    std::string trustedCertificates{};
};

/// Keeps its delegate alive until it is invalidated. Any thread.
class URLSession {
public:
    using CompletionHandler = std::function<void(
        std::optional<std::string> data, std::optional<URLResponse> response, std::optional<URLError> error)>;

    virtual ~URLSession() = default;

    virtual std::shared_ptr<URLSessionDataTask> dataTask(const URLRequest& request) = 0;

    /// `completionHandler` is called once, on a queue of the session's choosing; no delegate call is made.
    virtual std::shared_ptr<URLSessionDataTask> dataTask(const URLRequest& request,
                                                         CompletionHandler completionHandler) = 0;

    virtual void invalidateAndCancel() = 0;
};

class URLSessions {
public:
    virtual ~URLSessions() = default;

    virtual std::shared_ptr<URLSession> sharedSession() = 0;

    virtual std::shared_ptr<URLSession> makeSession(const URLSessionConfiguration& configuration,
                                                    std::shared_ptr<URLSessionDelegate> delegate,
                                                    std::shared_ptr<OperationQueue> delegateQueue) = 0;
};

} // namespace quillmoth::platform
