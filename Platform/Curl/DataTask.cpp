#include "Platform/Curl/DataTask.h"

#include "Foundation/Limits.h"
#include "Platform/Curl/NetworkThread.h"

#include <utility>

namespace quillmoth::platform {

namespace {

URLError cancelledError() {
    return {URLError::Code::cancelled, "The request was cancelled."};
}

} // namespace

DataTask::DataTask(std::shared_ptr<NetworkThread> network, URLRequest request,
                   std::shared_ptr<const URLSessionConfiguration> configuration,
                   std::shared_ptr<URLSessionDelegate> delegate,
                   std::shared_ptr<OperationQueue> delegateQueue)
    : network_(std::move(network)), request_(std::move(request)), configuration_(std::move(configuration)),
      delegate_(std::move(delegate)), delegateQueue_(std::move(delegateQueue)) {}

void DataTask::resume() {
    {
        const std::lock_guard lock(mutex_);
        if (std::exchange(resumed_, true) || finished_)
            return;
        self_ = shared_from_this();
    }
    if (!network_->start(shared_from_this()))
        finish(cancelledError());
}

void DataTask::cancel() {
    finish(cancelledError());
    const bool isWithNetwork = [&] {
        const std::lock_guard lock(mutex_);
        return resumed_;
    }();
    if (isWithNetwork)
        network_->abandon(shared_from_this());
}

std::optional<URLResponse> DataTask::response() const {
    const std::lock_guard lock(mutex_);
    return response_;
}

bool DataTask::isFinished() const {
    const std::lock_guard lock(mutex_);
    return finished_;
}

void DataTask::receiveRedirect(URLResponse response, URLRequest newRequest) {
    const std::lock_guard lock(mutex_);
    if (finished_)
        return;
    mail_.redirect = Redirect{std::move(response), std::move(newRequest)};
    scheduleDelivery();
}

void DataTask::receiveHead(URLResponse response) {
    const std::lock_guard lock(mutex_);
    if (finished_)
        return;
    mail_.head = std::move(response);
    scheduleDelivery();
}

bool DataTask::receiveData(std::string_view data) {
    const std::lock_guard lock(mutex_);
    if (finished_)
        return true;
    if (mail_.data.size() >= limits::kWaitingData) {
        networkWaits_ = true;
        return false;
    }
    mail_.data.append(data);
    scheduleDelivery();
    return true;
}

void DataTask::finish(std::optional<URLError> error) {
    const std::lock_guard lock(mutex_);
    const bool isCancelled = error && error->code == URLError::Code::cancelled;
    // A cancellation overtakes an end that the delegate has not heard of yet.
    if (std::exchange(finished_, true) && !(isCancelled && mail_.complete))
        return;
    if (isCancelled) {
        mail_ = Mail();
        open_ = Question::none;
    }
    mail_.complete = true;
    mail_.error = std::move(error);
    scheduleDelivery();
}

void DataTask::scheduleDelivery() {
    if (open_ != Question::none || scheduled_ || !delegateQueue_)
        return;
    scheduled_ = true;
    delegateQueue_->addOperation([self = shared_from_this()] { self->deliver(); });
}

void DataTask::deliver() {
    while (deliverNext()) {
    }
}

/// Delivers one thing; false where there is nothing more for now.
bool DataTask::deliverNext() {
    std::unique_lock lock(mutex_);
    const auto delegate = delegate_;
    if (open_ != Question::none || !delegate) {
        scheduled_ = false;
        return false;
    }
    if (const auto redirect = std::exchange(mail_.redirect, std::nullopt)) {
        open_ = Question::redirect;
        lock.unlock();
        deliverRedirect(*delegate, *redirect);
        return true;
    }
    if (mail_.head) {
        response_ = std::exchange(mail_.head, std::nullopt);
        open_ = Question::head;
        const URLResponse head = *response_;
        lock.unlock();
        deliverHead(*delegate, head);
        return true;
    }
    if (!mail_.data.empty()) {
        delivering_.clear();
        delivering_.swap(mail_.data);
        const bool networkWaits = std::exchange(networkWaits_, false);
        lock.unlock();
        delegate->didReceiveData(*this, delivering_);
        if (networkWaits)
            network_->unpause(shared_from_this());
        return true;
    }
    scheduled_ = false;
    if (!std::exchange(mail_.complete, false))
        return false;
    const std::optional<URLError> error = std::move(mail_.error);
    // The last references, maybe: they go behind the lock and the call.
    const auto self = std::exchange(self_, nullptr);
    const auto queue = std::exchange(delegateQueue_, nullptr);
    delegate_ = nullptr;
    lock.unlock();
    delegate->didCompleteWithError(*this, error);
    return false;
}

void DataTask::deliverRedirect(URLSessionDelegate& delegate, const Redirect& redirect) {
    delegate.willPerformHTTPRedirection(*this, redirect.response, redirect.newRequest,
                                        [weak = weak_from_this()](std::optional<URLRequest> request) {
                                            if (const auto self = weak.lock())
                                                self->answerRedirect(std::move(request));
                                        });
}

void DataTask::deliverHead(URLSessionDelegate& delegate, const URLResponse& head) {
    delegate.didReceiveResponse(*this, head,
                                [weak = weak_from_this()](URLSessionDelegate::ResponseDisposition answer) {
                                    if (const auto self = weak.lock())
                                        self->answerHead(answer);
                                });
}

void DataTask::answerRedirect(std::optional<URLRequest> request) {
    if (takeAnswer(Question::redirect))
        network_->answerRedirect(shared_from_this(), std::move(request));
}

void DataTask::answerHead(URLSessionDelegate::ResponseDisposition disposition) {
    if (!takeAnswer(Question::head))
        return;
    if (disposition == URLSessionDelegate::ResponseDisposition::cancel)
        cancel();
}

/// False where the question is not open any more.
bool DataTask::takeAnswer(Question question) {
    const std::lock_guard lock(mutex_);
    if (open_ != question)
        return false;
    open_ = Question::none;
    scheduleDelivery();
    return true;
}

} // namespace quillmoth::platform
