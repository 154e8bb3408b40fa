#pragma once

#include "Platform/OperationQueue.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>

namespace quillmoth::platform {

/// Serial queues that run nothing by themselves: the test steps them, all in one order, on its own thread. In
/// the inline mode each operation runs within addOperation, or behind the one that adds it.
class FakeOperationQueues final : public OperationQueues {
public:
    std::shared_ptr<OperationQueue> makeSerialQueue() override;

    /// Runs the operation that was added first, of whatever queue; false where none waits.
    bool runOne();
    void runUntilIdle();
    void setRunsInline(bool runsInline);

    [[nodiscard]] std::size_t pendingCount() const;
    [[nodiscard]] std::size_t queueCount() const;

    /// Drops what waits, without running it.
    void clear();

private:
    class Queue;

    /// Shared with the queues, so that work survives its queue.
    struct State {
        mutable std::mutex mutex;
        std::deque<std::function<void()>> waiting;
        bool runsInline = false;
        bool isRunning = false;
        std::size_t queueCount = 0;

        bool runOne();
    };

    std::shared_ptr<State> state_ = std::make_shared<State>();
};

} // namespace quillmoth::platform
