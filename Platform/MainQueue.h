#pragma once

#include <chrono>
#include <functional>

namespace quillmoth::platform {

/// The serial queue of the main thread.
class MainQueue {
public:
    using Seconds = std::chrono::duration<double>;

    virtual ~MainQueue() = default;

    /// Runs `work` on the main thread, after this turn and behind all work queued before it. Any thread.
    virtual void async(std::function<void()> work) = 0;

    /// Runs `work` on the main thread, not before `delay` has passed. Any thread.
    virtual void asyncAfter(Seconds delay, std::function<void()> work) = 0;
};

} // namespace quillmoth::platform
