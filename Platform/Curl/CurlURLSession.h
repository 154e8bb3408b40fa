#pragma once

#include "Platform/Curl/DataTask.h"

#include <memory>
#include <mutex>
#include <vector>

namespace quillmoth::platform {

/// A session: what its tasks have in common. A task that runs outlives the session's object.
class CurlURLSession final : public URLSession {
public:
    enum class Kind {
        own,
        /// Takes the longest wait for data from each request, and cannot be invalidated.
        shared
    };

    CurlURLSession(Kind kind, std::shared_ptr<NetworkThread> network,
                   const URLSessionConfiguration& configuration, std::shared_ptr<URLSessionDelegate> delegate,
                   std::shared_ptr<OperationQueue> delegateQueue);

    std::shared_ptr<URLSessionDataTask> dataTask(const URLRequest& request) override;
    std::shared_ptr<URLSessionDataTask> dataTask(const URLRequest& request,
                                                 CompletionHandler completionHandler) override;
    void invalidateAndCancel() override;

private:
    std::shared_ptr<DataTask> makeTask(const URLRequest& request,
                                       std::shared_ptr<URLSessionDelegate> delegate);

    const Kind kind_;
    const std::shared_ptr<NetworkThread> network_;
    const std::shared_ptr<const URLSessionConfiguration> configuration_;
    const std::shared_ptr<OperationQueue> delegateQueue_;

    std::mutex mutex_;
    std::shared_ptr<URLSessionDelegate> delegate_;
    std::vector<std::weak_ptr<DataTask>> tasks_;
    bool invalidated_ = false;
};

} // namespace quillmoth::platform
