#pragma once

#include "Platform/OperationQueue.h"

#include <memory>

namespace quillmoth::platform {

/// Serial queues that share a few worker threads; a thread is started when there is work and no idle one.
/// The destructor waits until all work has run. Work added to a queue afterwards is not run.
class SerialOperationQueues final : public OperationQueues {
public:
    SerialOperationQueues();
    /// Not on a worker thread.
    ~SerialOperationQueues() override;
    SerialOperationQueues(const SerialOperationQueues&) = delete;
    SerialOperationQueues& operator=(const SerialOperationQueues&) = delete;

    std::shared_ptr<OperationQueue> makeSerialQueue() override;

private:
    class Workers;
    class Queue;
    struct Work;

    std::shared_ptr<Workers> workers_;
};

} // namespace quillmoth::platform
