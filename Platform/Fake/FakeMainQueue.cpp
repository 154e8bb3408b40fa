#include "Platform/Fake/FakeMainQueue.h"

#include <algorithm>

namespace quillmoth::platform {

void FakeMainQueue::async(std::function<void()> work) {
    asyncAfter(Seconds(0), std::move(work));
}

void FakeMainQueue::asyncAfter(Seconds delay, std::function<void()> work) {
    const std::lock_guard lock(mutex_);
    const Place place{now_ + std::max(delay, Seconds(0)), nextNumber_++};
    waiting_.emplace(place, std::move(work));
}

bool FakeMainQueue::runOne() {
    std::function<void()> work;
    {
        const std::lock_guard lock(mutex_);
        if (waiting_.empty() || waiting_.begin()->first.first > now_)
            return false;
        work = std::move(waiting_.extract(waiting_.begin()).mapped());
    }
    work();
    return true;
}

void FakeMainQueue::runUntilIdle() {
    while (runOne()) {
    }
}

void FakeMainQueue::advance(double seconds) {
    // Sums of decimal fractions miss each other by a few units in the last place.
    constexpr Seconds kRounding(1e-9);
    const Seconds target = now_ + Seconds(seconds);
    runUntilIdle();
    while (true) {
        {
            const std::lock_guard lock(mutex_);
            if (waiting_.empty() || waiting_.begin()->first.first > target + kRounding)
                break;
            now_ = std::max(now_, waiting_.begin()->first.first);
        }
        runUntilIdle();
    }
    const std::lock_guard lock(mutex_);
    now_ = std::max(now_, target);
}

std::size_t FakeMainQueue::pendingCount() const {
    const std::lock_guard lock(mutex_);
    return waiting_.size();
}

double FakeMainQueue::now() const {
    const std::lock_guard lock(mutex_);
    return now_.count();
}

void FakeMainQueue::clear() {
    std::map<Place, std::function<void()>> dropped;
    const std::lock_guard lock(mutex_);
    dropped.swap(waiting_);
}

} // namespace quillmoth::platform
