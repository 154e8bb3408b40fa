#include "Platform/Fake/FakeURLSession.h"

#include "Foundation/FatalError.h"

#include <utility>

namespace quillmoth::platform {

FakeDataTask::FakeDataTask(std::weak_ptr<FakeURLSession> session, URLRequest request,
                           URLSession::CompletionHandler completionHandler)
    : session_(std::move(session)), request_(std::move(request)),
      completionHandler_(std::move(completionHandler)) {}

void FakeDataTask::resume() {
    isResumed_ = true;
    const auto session = session_.lock();
    if (!session || session->isInvalidated())
        cancel();
}

void FakeDataTask::cancel() {
    if (isFinished_)
        return;
    isCancelled_ = true;
    finish(URLError{.code = URLError::Code::cancelled, .localizedDescription = "cancelled"});
}

template<class Call>
void FakeDataTask::tellDelegate(Call call) {
    const auto session = session_.lock();
    if (!session || !session->delegate())
        return;
    session->delegateQueue()->addOperation([self = shared_from_this(), delegate = session->delegate(),
                                            call = std::move(call)] { call(*self, *delegate); });
}

void FakeDataTask::deliverResponse(const URLResponse& response) {
    if (isFinished_)
        return;
    tellDelegate([response](FakeDataTask& self, URLSessionDelegate& delegate) {
        self.response_ = response;
        delegate.didReceiveResponse(
            self, response,
            [task = self.shared_from_this()](URLSessionDelegate::ResponseDisposition disposition) {
                task->disposition_ = disposition;
                if (disposition == URLSessionDelegate::ResponseDisposition::cancel)
                    task->cancel();
            });
    });
}

void FakeDataTask::deliverStatus(int statusCode) {
    deliverResponse(URLResponse{.url = request_.url, .statusCode = statusCode, .headers = {}});
}

void FakeDataTask::deliverData(std::string data) {
    if (isFinished_)
        return;
    tellDelegate([data = std::move(data)](FakeDataTask& self, URLSessionDelegate& delegate) {
        delegate.didReceiveData(self, data);
    });
}

void FakeDataTask::redirect(const URLResponse& response, const URLRequest& newRequest) {
    if (isFinished_)
        return;
    tellDelegate([response, newRequest](FakeDataTask& self, URLSessionDelegate& delegate) {
        delegate.willPerformHTTPRedirection(
            self, response, newRequest, [task = self.shared_from_this()](std::optional<URLRequest> answer) {
                task->redirectAnswers_.push_back(std::move(answer));
            });
    });
}

void FakeDataTask::complete(const std::optional<URLError>& error) {
    if (!isFinished_)
        finish(error);
}

void FakeDataTask::finish(const std::optional<URLError>& error) {
    isFinished_ = true;
    if (auto handler = std::exchange(completionHandler_, nullptr)) {
        handler(std::nullopt, std::nullopt, error);
        return;
    }
    tellDelegate([error](FakeDataTask& self, URLSessionDelegate& delegate) {
        delegate.didCompleteWithError(self, error);
    });
}

void FakeDataTask::answer(std::optional<std::string> data, std::optional<URLResponse> response,
                          std::optional<URLError> error) {
    auto handler = std::exchange(completionHandler_, nullptr);
    if (!handler)
        fatalError("The task has no completion handler, or has been answered.");
    isFinished_ = true;
    response_ = response;
    handler(std::move(data), std::move(response), std::move(error));
}

void FakeDataTask::answer(int statusCode, std::string data) {
    answer(std::move(data), URLResponse{.url = request_.url, .statusCode = statusCode, .headers = {}},
           std::nullopt);
}

URLRequest FakeDataTask::sentRequest() const {
    URLRequest sent = request_;
    if (const auto session = session_.lock()) {
        for (const auto& [field, value] : session->configuration().httpAdditionalHeaders) {
            if (!sent.value(field))
                sent.setValue(value, field);
        }
    }
    return sent;
}

FakeURLSession::FakeURLSession(URLSessionConfiguration configuration,
                               std::shared_ptr<URLSessionDelegate> delegate,
                               std::shared_ptr<OperationQueue> delegateQueue)
    : configuration_(std::move(configuration)), delegate_(std::move(delegate)),
      delegateQueue_(std::move(delegateQueue)) {}

std::shared_ptr<URLSessionDataTask> FakeURLSession::dataTask(const URLRequest& request) {
    return dataTask(request, nullptr);
}

std::shared_ptr<URLSessionDataTask> FakeURLSession::dataTask(const URLRequest& request,
                                                             CompletionHandler completionHandler) {
    return tasks_.emplace_back(
        std::make_shared<FakeDataTask>(weak_from_this(), request, std::move(completionHandler)));
}

void FakeURLSession::invalidateAndCancel() {
    if (std::exchange(isInvalidated_, true))
        return;
    const auto tasks = tasks_;
    for (const auto& task : tasks)
        task->cancel();
    delegate_.reset();
}

FakeDataTask& FakeURLSession::lastTask() const {
    if (tasks_.empty())
        fatalError("The session has made no task.");
    return *tasks_.back();
}

} // namespace quillmoth::platform
