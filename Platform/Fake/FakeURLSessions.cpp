#include "Platform/Fake/FakeURLSessions.h"

#include "Foundation/FatalError.h"

#include <utility>

namespace quillmoth::platform {

std::shared_ptr<URLSession> FakeURLSessions::makeSession(const URLSessionConfiguration& configuration,
                                                         std::shared_ptr<URLSessionDelegate> delegate,
                                                         std::shared_ptr<OperationQueue> delegateQueue) {
    return sessions_.emplace_back(
        std::make_shared<FakeURLSession>(configuration, std::move(delegate), std::move(delegateQueue)));
}

FakeURLSession& FakeURLSessions::lastSession() const {
    if (sessions_.empty())
        fatalError("No session has been made.");
    return *sessions_.back();
}

void FakeURLSessions::releaseDelegates() {
    for (const auto& session : sessions_)
        session->releaseDelegate();
}

} // namespace quillmoth::platform
