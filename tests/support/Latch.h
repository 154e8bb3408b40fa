#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>

namespace quillmoth::test {

/// A gate that a test opens once. Any thread.
class Latch {
public:
    void release() {
        const std::lock_guard lock(mutex_);
        released_ = true;
        changed_.notify_all();
    }

    void wait() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return released_; });
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool released_ = false;
};

inline std::shared_ptr<Latch> makeLatch() {
    return std::make_shared<Latch>();
}

} // namespace quillmoth::test
