#pragma once

#include "Platform/OperationQueue.h"
#include "Platform/URLSession.h"

#include <memory>
#include <mutex>
#include <vector>

namespace quillmoth::platform {

class CurlURLSession;
class NetworkThread;

/// HTTP and HTTPS on one network thread that starts, and opens the network library, with the first task.
/// Connections, name answers and TLS sessions are shared by all sessions. Proxies are taken from the
/// environment (http_proxy, https_proxy, all_proxy, no_proxy); the certificates of servers are always
/// checked. The destructor cancels what runs; the completions come on the delegate queues, which must live
/// longer.
class CurlURLSessions final : public URLSessions {
public:
    explicit CurlURLSessions(OperationQueues& operationQueues);
    ~CurlURLSessions() override;
    CurlURLSessions(const CurlURLSessions&) = delete;
    CurlURLSessions& operator=(const CurlURLSessions&) = delete;

    /// Does ahead of the first task what it would wait for; returns at once.
    void prepare();

    std::shared_ptr<URLSession> sharedSession() override;
    /// Without a delegate queue the session gets one of its own.
    std::shared_ptr<URLSession> makeSession(const URLSessionConfiguration& configuration,
                                            std::shared_ptr<URLSessionDelegate> delegate,
                                            std::shared_ptr<OperationQueue> delegateQueue) override;

private:
    OperationQueues& operationQueues_;
    const std::shared_ptr<NetworkThread> network_;
    std::mutex mutex_;
    std::shared_ptr<URLSession> sharedSession_;
    std::vector<std::weak_ptr<CurlURLSession>> sessions_;
};

} // namespace quillmoth::platform
