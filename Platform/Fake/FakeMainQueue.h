#pragma once

#include "Platform/MainQueue.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <utility>

namespace quillmoth::platform {

/// A main queue with a clock of its own, which moves only when the test says so. Work is queued from any
/// thread and runs in the calls below, on the caller's thread: earliest due first, then as queued.
class FakeMainQueue final : public MainQueue {
public:
    void async(std::function<void()> work) override;
    void asyncAfter(Seconds delay, std::function<void()> work) override;

    /// Runs the first piece of work that is due; false where none is.
    bool runOne();

    /// Runs all that is due now, and what that queues for now. The clock stands still.
    void runUntilIdle();

    /// Moves the clock on by `seconds`, running each piece of work at its own moment.
    void advance(double seconds);

    /// Pieces of work that wait, due or not.
    [[nodiscard]] std::size_t pendingCount() const;

    /// Seconds since the queue was made.
    [[nodiscard]] double now() const;

    /// Drops what waits, without running it.
    void clear();

private:
    /// Due moment, then number in the order of queueing.
    using Place = std::pair<Seconds, std::uint64_t>;

    mutable std::mutex mutex_;
    Seconds now_{0};
    std::uint64_t nextNumber_ = 0;
    std::map<Place, std::function<void()>> waiting_;
};

} // namespace quillmoth::platform
