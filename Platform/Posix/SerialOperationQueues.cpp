#include "Platform/Posix/SerialOperationQueues.h"

#include "Foundation/BlockedSignals.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace quillmoth::platform {

namespace {

// A queue whose operation waits for something holds up one thread: a few leave room for the others.
constexpr std::size_t kMostThreads = 4;

} // namespace

/// The operations of one queue. It outlives the queue while there is work.
struct SerialOperationQueues::Work {
    std::deque<std::function<void()>> operations;
    bool scheduled = false;
};

/// The threads, and the queues that have work. One mutex guards all of it.
class SerialOperationQueues::Workers {
public:
    void add(const std::shared_ptr<Work>& work, std::function<void()> operation) {
        const std::lock_guard lock(mutex_);
        if (finished_)
            return;
        work->operations.push_back(std::move(operation));
        if (std::exchange(work->scheduled, true))
            return;
        ready_.push_back(work);
        if (ready_.size() > idle_ && threads_.size() < kMostThreads)
            startThread();
        else
            wake_.notify_one();
    }

    void finish() {
        std::vector<std::thread> threads;
        {
            std::unique_lock lock(mutex_);
            stopping_ = true;
            wake_.notify_all();
            drained_.wait(lock, [&] { return ready_.empty() && busy_ == 0; });
            finished_ = true;
            wake_.notify_all();
            threads.swap(threads_);
        }
        for (std::thread& thread : threads)
            thread.join();
    }

private:
    void startThread() {
        const BlockedSignals blocked;
        threads_.emplace_back([this] { run(); });
    }

    void run() {
        std::unique_lock lock(mutex_);
        for (;;) {
            ++idle_;
            wake_.wait(lock, [&] { return finished_ || !ready_.empty(); });
            --idle_;
            if (ready_.empty())
                return;
            const auto work = std::move(ready_.front());
            ready_.pop_front();
            ++busy_;
            runOne(*work, lock);
            --busy_;
            work->scheduled = !work->operations.empty();
            if (work->scheduled)
                ready_.push_back(work);
            else if (stopping_ && ready_.empty() && busy_ == 0)
                drained_.notify_all();
        }
    }

    /// One operation at a turn, so that queues with much work do not keep the others waiting.
    static void runOne(Work& work, std::unique_lock<std::mutex>& lock) {
        auto operation = std::move(work.operations.front());
        work.operations.pop_front();
        lock.unlock();
        operation();
        // Destroyed out here too: what it holds may well be the last of an object with much to do.
        operation = nullptr;
        lock.lock();
    }

    std::mutex mutex_;
    std::condition_variable wake_;
    std::condition_variable drained_;
    std::deque<std::shared_ptr<Work>> ready_;
    std::vector<std::thread> threads_;
    std::size_t idle_ = 0;
    std::size_t busy_ = 0;
    bool stopping_ = false;
    bool finished_ = false;
};

class SerialOperationQueues::Queue final : public OperationQueue {
public:
    explicit Queue(std::shared_ptr<Workers> workers) : workers_(std::move(workers)) {}

    void addOperation(std::function<void()> operation) override {
        workers_->add(work_, std::move(operation));
    }

private:
    const std::shared_ptr<Workers> workers_;
    const std::shared_ptr<Work> work_ = std::make_shared<Work>();
};

SerialOperationQueues::SerialOperationQueues() : workers_(std::make_shared<Workers>()) {}

SerialOperationQueues::~SerialOperationQueues() {
    workers_->finish();
}

std::shared_ptr<OperationQueue> SerialOperationQueues::makeSerialQueue() {
    return std::make_shared<Queue>(workers_);
}

} // namespace quillmoth::platform
