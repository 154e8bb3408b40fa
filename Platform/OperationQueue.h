#pragma once

#include <functional>
#include <memory>

namespace quillmoth::platform {

/// A queue that runs one operation at a time, in order, off the main thread. Work still queued when the last
/// reference goes is run to its end all the same.
class OperationQueue {
public:
    virtual ~OperationQueue() = default;

    /// Any thread.
    virtual void addOperation(std::function<void()> operation) = 0;
};

class OperationQueues {
public:
    virtual ~OperationQueues() = default;

    /// A new queue whose maximum of concurrent operations is 1.
    virtual std::shared_ptr<OperationQueue> makeSerialQueue() = 0;
};

} // namespace quillmoth::platform
