#include "Platform/Fake/FakeOperationQueues.h"

#include <utility>

namespace quillmoth::platform {

class FakeOperationQueues::Queue final : public OperationQueue {
public:
    explicit Queue(std::shared_ptr<State> state) : state_(std::move(state)) {}

    void addOperation(std::function<void()> operation) override {
        {
            const std::lock_guard lock(state_->mutex);
            state_->waiting.push_back(std::move(operation));
            if (!state_->runsInline || state_->isRunning)
                return;
        }
        // The operation may drop the last reference to this queue.
        const auto state = state_;
        while (state->runOne()) {
        }
    }

private:
    std::shared_ptr<State> state_;
};

bool FakeOperationQueues::State::runOne() {
    std::function<void()> operation;
    {
        const std::lock_guard lock(mutex);
        if (waiting.empty() || isRunning)
            return false;
        operation = std::move(waiting.front());
        waiting.pop_front();
        isRunning = true;
    }
    operation();
    operation = nullptr;
    const std::lock_guard lock(mutex);
    isRunning = false;
    return true;
}

std::shared_ptr<OperationQueue> FakeOperationQueues::makeSerialQueue() {
    const std::lock_guard lock(state_->mutex);
    ++state_->queueCount;
    return std::make_shared<Queue>(state_);
}

bool FakeOperationQueues::runOne() {
    return state_->runOne();
}

void FakeOperationQueues::runUntilIdle() {
    while (runOne()) {
    }
}

void FakeOperationQueues::setRunsInline(bool runsInline) {
    {
        const std::lock_guard lock(state_->mutex);
        state_->runsInline = runsInline;
    }
    if (runsInline)
        runUntilIdle();
}

std::size_t FakeOperationQueues::pendingCount() const {
    const std::lock_guard lock(state_->mutex);
    return state_->waiting.size();
}

std::size_t FakeOperationQueues::queueCount() const {
    const std::lock_guard lock(state_->mutex);
    return state_->queueCount;
}

void FakeOperationQueues::clear() {
    std::deque<std::function<void()>> dropped;
    const std::lock_guard lock(state_->mutex);
    dropped.swap(state_->waiting);
}

} // namespace quillmoth::platform
