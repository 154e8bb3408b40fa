#pragma once

#include "Platform/Fake/FakeURLSession.h"

#include <memory>
#include <vector>

namespace quillmoth::platform {

/// Records every session; no network.
class FakeURLSessions final : public URLSessions {
public:
    std::shared_ptr<URLSession> sharedSession() override { return shared_; }

    std::shared_ptr<URLSession> makeSession(const URLSessionConfiguration& configuration,
                                            std::shared_ptr<URLSessionDelegate> delegate,
                                            std::shared_ptr<OperationQueue> delegateQueue) override;

    /// The one-shot requests are the tasks of this one.
    [[nodiscard]] FakeURLSession& shared() const { return *shared_; }

    /// Those of makeSession, in order.
    [[nodiscard]] const std::vector<std::shared_ptr<FakeURLSession>>& sessions() const { return sessions_; }

    /// The session made last; a fatal fault where there is none.
    [[nodiscard]] FakeURLSession& lastSession() const;

    /// Lets go of all delegates, which else live until their session is invalidated.
    void releaseDelegates();

private:
    std::shared_ptr<FakeURLSession> shared_ =
        std::make_shared<FakeURLSession>(URLSessionConfiguration{}, nullptr, nullptr);
    std::vector<std::shared_ptr<FakeURLSession>> sessions_;
};

} // namespace quillmoth::platform
