#include "Platform/Curl/CurlURLSessions.h"

#include "Platform/Curl/CurlURLSession.h"
#include "Platform/Curl/NetworkThread.h"

#include <utility>

namespace quillmoth::platform {

CurlURLSessions::CurlURLSessions(OperationQueues& operationQueues)
    : operationQueues_(operationQueues), network_(std::make_shared<NetworkThread>()) {}

CurlURLSessions::~CurlURLSessions() {
    // A delegate that owns its session would otherwise never go.
    for (const auto& weak : sessions_) {
        if (const auto session = weak.lock())
            session->invalidateAndCancel();
    }
    network_->shutDown();
}

void CurlURLSessions::prepare() {
    network_->prepare();
}

std::shared_ptr<URLSession> CurlURLSessions::sharedSession() {
    const std::lock_guard lock(mutex_);
    if (!sharedSession_)
        sharedSession_ = std::make_shared<CurlURLSession>(CurlURLSession::Kind::shared, network_,
                                                          URLSessionConfiguration(), nullptr,
                                                          operationQueues_.makeSerialQueue());
    return sharedSession_;
}

std::shared_ptr<URLSession> CurlURLSessions::makeSession(const URLSessionConfiguration& configuration,
                                                         std::shared_ptr<URLSessionDelegate> delegate,
                                                         std::shared_ptr<OperationQueue> delegateQueue) {
    if (!delegateQueue)
        delegateQueue = operationQueues_.makeSerialQueue();
    auto session = std::make_shared<CurlURLSession>(CurlURLSession::Kind::own, network_, configuration,
                                                    std::move(delegate), std::move(delegateQueue));
    const std::lock_guard lock(mutex_);
    std::erase_if(sessions_, [](const auto& former) { return former.expired(); });
    sessions_.push_back(session);
    return session;
}

} // namespace quillmoth::platform
