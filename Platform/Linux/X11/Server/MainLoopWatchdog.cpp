#include "Platform/Linux/X11/Server/MainLoopWatchdog.h"

#include "Foundation/BlockedSignals.h"

#include <utility>

namespace quillmoth::platform {

namespace {

constexpr int kBeatsPerLimit = 4;

} // namespace

MainLoopWatchdog::MainLoopWatchdog(std::function<void()> rescue, std::function<void()> resumed)
    : rescue_(std::move(rescue)), resumed_(std::move(resumed)) {
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { beat(); });
}

MainLoopWatchdog::~MainLoopWatchdog() {
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
    }
    changed_.notify_all();
    if (thread_.joinable())
        thread_.join();
}

void MainLoopWatchdog::start() {
    if (timer_.isActive())
        return;
    timer_.start(limit_ / kBeatsPerLimit);
    {
        const std::lock_guard lock(mutex_);
        hasRescued_ = false;
        deadline_ = std::chrono::steady_clock::now() + limit_;
    }
    if (!thread_.joinable()) {
        const BlockedSignals blocked;
        thread_ = std::thread([this] { watch(); });
    }
    changed_.notify_all();
}

void MainLoopWatchdog::stop() {
    timer_.stop();
    const std::lock_guard lock(mutex_);
    deadline_.reset();
}

bool MainLoopWatchdog::hasRescued() {
    const std::lock_guard lock(mutex_);
    return hasRescued_;
}

void MainLoopWatchdog::beat() {
    {
        const std::lock_guard lock(mutex_);
        if (!hasRescued_) {
            deadline_ = std::chrono::steady_clock::now() + limit_;
            return;
        }
    }
    timer_.stop();
    resumed_();
}

void MainLoopWatchdog::watch() {
    std::unique_lock lock(mutex_);
    while (!isEnding_) {
        if (!deadline_) {
            changed_.wait(lock);
        } else if (std::chrono::steady_clock::now() < *deadline_) {
            const auto deadline = *deadline_;
            changed_.wait_until(lock, deadline);
        } else {
            deadline_.reset();
            hasRescued_ = true;
            rescue_();
        }
    }
}

} // namespace quillmoth::platform
