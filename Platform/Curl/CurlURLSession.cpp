#include "Platform/Curl/CurlURLSession.h"

#include "Platform/Curl/NetworkThread.h"
#include "Platform/Curl/URLErrors.h"

#include <utility>

namespace quillmoth::platform {

namespace {

/// Gathers a whole answer for a completion handler. A longer one than the request allows is broken off.
class AnswerCollector final : public URLSessionDelegate {
public:
    AnswerCollector(const URLRequest& request, URLSession::CompletionHandler handler)
        : url_(request.url), largest_(request.largestAnswer), handler_(std::move(handler)) {}

    void didReceiveResponse(URLSessionDataTask& /*task*/, const URLResponse& /*response*/,
                            const std::function<void(ResponseDisposition)>& completionHandler) override {
        completionHandler(ResponseDisposition::allow);
    }

    void didReceiveData(URLSessionDataTask& task, std::string_view data) override {
        if (data.size() <= largest_ - data_.size()) {
            data_.append(data);
            return;
        }
        data_ = std::string();
        tooLarge_ = tooLargeAnswerError(serverOf(url_).value_or(Server()), largest_);
        task.cancel();
    }

    void didCompleteWithError(URLSessionDataTask& task, const std::optional<URLError>& error) override {
        if (!handler_)
            return;
        const auto handler = std::exchange(handler_, nullptr);
        if (tooLarge_)
            handler(std::nullopt, task.response(), tooLarge_);
        else if (error)
            handler(std::nullopt, task.response(), error);
        else
            handler(std::move(data_), task.response(), std::nullopt);
    }

    void willPerformHTTPRedirection(
        URLSessionDataTask& /*task*/, const URLResponse& /*response*/, const URLRequest& newRequest,
        const std::function<void(std::optional<URLRequest>)>& completionHandler) override {
        completionHandler(newRequest);
    }

private:
    const std::string url_;
    const std::size_t largest_;
    URLSession::CompletionHandler handler_;
    std::string data_;
    std::optional<URLError> tooLarge_;
};

} // namespace

CurlURLSession::CurlURLSession(Kind kind, std::shared_ptr<NetworkThread> network,
                               const URLSessionConfiguration& configuration,
                               std::shared_ptr<URLSessionDelegate> delegate,
                               std::shared_ptr<OperationQueue> delegateQueue)
    : kind_(kind), network_(std::move(network)),
      configuration_(std::make_shared<const URLSessionConfiguration>(configuration)),
      delegateQueue_(std::move(delegateQueue)), delegate_(std::move(delegate)) {}

std::shared_ptr<URLSessionDataTask> CurlURLSession::dataTask(const URLRequest& request) {
    std::shared_ptr<URLSessionDelegate> delegate;
    {
        const std::lock_guard lock(mutex_);
        delegate = delegate_;
    }
    // Where nobody is there to be told, the task runs all the same.
    return delegate ? makeTask(request, std::move(delegate)) : dataTask(request, nullptr);
}

std::shared_ptr<URLSessionDataTask> CurlURLSession::dataTask(const URLRequest& request,
                                                             CompletionHandler completionHandler) {
    return makeTask(request, std::make_shared<AnswerCollector>(request, std::move(completionHandler)));
}

void CurlURLSession::invalidateAndCancel() {
    if (kind_ == Kind::shared)
        return;
    std::vector<std::weak_ptr<DataTask>> tasks;
    std::shared_ptr<URLSessionDelegate> delegate;
    {
        const std::lock_guard lock(mutex_);
        invalidated_ = true;
        tasks.swap(tasks_);
        delegate.swap(delegate_);
    }
    for (const auto& weak : tasks) {
        if (const auto task = weak.lock())
            task->cancel();
    }
}

std::shared_ptr<DataTask> CurlURLSession::makeTask(const URLRequest& request,
                                                   std::shared_ptr<URLSessionDelegate> delegate) {
    auto configuration = configuration_;
    if (kind_ == Kind::shared) {
        auto own = *configuration_;
        own.timeoutIntervalForRequest = request.timeoutInterval;
        configuration = std::make_shared<const URLSessionConfiguration>(std::move(own));
    }
    const auto task = std::make_shared<DataTask>(network_, request, std::move(configuration),
                                                 std::move(delegate), delegateQueue_);
    bool invalidated = false;
    {
        const std::lock_guard lock(mutex_);
        invalidated = invalidated_;
        std::erase_if(tasks_, [](const auto& former) { return former.expired(); });
        tasks_.push_back(task);
    }
    if (invalidated)
        task->cancel();
    return task;
}

} // namespace quillmoth::platform
