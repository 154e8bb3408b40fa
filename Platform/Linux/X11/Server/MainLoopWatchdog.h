#pragma once

#include <QTimer>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace quillmoth::platform {

/// Does what must be done when the main loop hangs at a bad moment. Between `start` and `stop` a timer of the
/// main loop beats; where it has not done so for two seconds, a thread of the watchdog's own calls `rescue`,
/// once. Main thread; the thread is made at the first start, and wakes up only while the watchdog is on.
class MainLoopWatchdog {
public:
    /// `rescue` is called on the watchdog's thread and never between `stop` and the next `start`; until it
    /// returns, stop and the main loop's beat wait. `resumed` is called on the main thread once the loop runs
    /// again after a rescue, unless the watchdog has been stopped by then.
    MainLoopWatchdog(std::function<void()> rescue, std::function<void()> resumed);
    ~MainLoopWatchdog();

    MainLoopWatchdog(const MainLoopWatchdog&) = delete;
    MainLoopWatchdog& operator=(const MainLoopWatchdog&) = delete;

    void start();
    void stop();

    /// Whether `rescue` has been called since the latest start.
    [[nodiscard]] bool hasRescued();

    /// From the next start on. Tests shorten it.
    void setLimit(std::chrono::milliseconds limit) { limit_ = limit; }

private:
    void beat();
    void watch();

    std::function<void()> rescue_;
    std::function<void()> resumed_;
    std::chrono::milliseconds limit_{2000};
    QTimer timer_;
    std::mutex mutex_;
    std::condition_variable changed_;
    /// No moment while the watchdog is off, and after a rescue.
    std::optional<std::chrono::steady_clock::time_point> deadline_;
    bool hasRescued_ = false;
    bool isEnding_ = false;
    std::thread thread_;
};

} // namespace quillmoth::platform
