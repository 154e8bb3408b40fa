#pragma once

#include "Platform/MainQueue.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <utility>

namespace quillmoth::test {

/// A main queue on whichever thread runs it, with real time: for tests with real threads behind them.
class RunLoop final : public platform::MainQueue {
public:
    void async(std::function<void()> work) override { asyncAfter(Seconds(0), std::move(work)); }

    void asyncAfter(Seconds delay, std::function<void()> work) override {
        const auto due = Clock::now() + std::chrono::duration_cast<Clock::duration>(delay);
        const std::lock_guard lock(mutex_);
        // Of equal times, the one queued first comes first.
        work_.emplace(due, std::move(work));
        changed_.notify_one();
    }

    /// Runs the work until `done` is true, ten seconds at most; false where it is not true by then.
    bool runUntil(const std::function<bool()>& done) {
        const auto patience = Clock::now() + std::chrono::seconds(10);
        while (!done()) {
            if (Clock::now() > patience)
                return false;
            runNext(patience);
        }
        return true;
    }

private:
    using Clock = std::chrono::steady_clock;

    void runNext(Clock::time_point patience) {
        std::unique_lock lock(mutex_);
        const auto due = work_.empty() ? patience : std::min(patience, work_.begin()->first);
        if (Clock::now() < due) {
            changed_.wait_until(lock, due);
            return;
        }
        const auto node = work_.extract(work_.begin());
        lock.unlock();
        node.mapped()();
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::multimap<Clock::time_point, std::function<void()>> work_;
};

} // namespace quillmoth::test
