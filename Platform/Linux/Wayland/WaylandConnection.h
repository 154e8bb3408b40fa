#pragma once

#include "Foundation/FileDescriptor.h"
#include "Foundation/Result.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>
#include <wayland-client.h>

namespace quillmoth::platform {

/// A connection of our own to the compositor, apart from the toolkit's, with a thread on which all of its
/// events are handled, so that other programs get their answers while the main thread is busy. What listens
/// is made before `start`, or on the thread.
class WaylandConnection {
public:
    using Clock = std::chrono::steady_clock;

    /// To the compositor of the environment. Fails where there is none.
    [[nodiscard]] static Result<std::unique_ptr<WaylandConnection>> open();

    /// Ends the thread; whatever belongs to the connection goes after `stop`, and before the object.
    ~WaylandConnection();
    WaylandConnection(const WaylandConnection&) = delete;
    WaylandConnection& operator=(const WaylandConnection&) = delete;

    void start();
    void stop();

    /// By the name of its interface.
    [[nodiscard]] bool offers(const std::string& interface) const { return globals_.contains(interface); }

    /// The compositor's object of that kind, of `version` or less; null where it offers none.
    template<class Proxy>
    [[nodiscard]] Proxy* bind(const wl_interface& interface, std::uint32_t version) {
        return static_cast<Proxy*>(bindAny(interface, version));
    }

    /// Null where there is none.
    [[nodiscard]] wl_seat* seat() const { return seat_; }

    /// Returns after the compositor has handled all requests so far. Before `start`, or on the thread.
    bool synchronize() { return wl_display_roundtrip(display_) >= 0; }

    /// Runs `work` on the thread and does not wait.
    void post(std::function<void()> work);

    /// Waits until `work` is done on the thread, or for the deadline; what comes late has no effect then.
    template<class Answer>
    std::optional<Answer> ask(std::function<Answer()> work, Clock::time_point deadline) {
        auto answer = std::make_shared<std::optional<Answer>>();
        post([this, answer, work = std::move(work)] {
            Answer found = work();
            const std::lock_guard lock(mutex_);
            answer->emplace(std::move(found));
            changed_.notify_all();
        });
        std::unique_lock lock(mutex_);
        changed_.wait_until(lock, deadline, [&answer] { return answer->has_value(); });
        return std::move(*answer);
    }

    // On the thread alone

    /// Calls `ready` when `events` of poll(2) come for the file, until that returns false.
    void watch(int file, short events, std::function<bool()> ready);

    void forget(int file) { watched_.erase(file); }

    /// Runs `work` at that time or a little later, in place of what was to be run so before.
    void setAlarm(Clock::time_point when, std::function<void()> work);

    /// Handles what has come; where nothing has, waits for something or for the deadline. False once the
    /// compositor has gone.
    bool step(Clock::time_point deadline);

private:
    struct Watched {
        short events;
        std::function<bool()> ready;
    };

    explicit WaylandConnection(wl_display* display);
    [[nodiscard]] void* bindAny(const wl_interface& interface, std::uint32_t version);
    void run();
    bool runJob();
    void runAlarm();
    void tellWatchers(const std::vector<int>& ready);
    void awaitWake() const;

    struct Global {
        std::uint32_t name;
        std::uint32_t version;
    };

    wl_display* display_;
    wl_registry* registry_ = nullptr;
    wl_seat* seat_ = nullptr;
    std::map<std::string, Global> globals_;
    std::map<int, Watched> watched_;
    Clock::time_point alarmTime_ = Clock::time_point::max();
    std::function<void()> alarm_;
    FileDescriptor wakeFile_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> jobs_;
    std::atomic<bool> isStopping_ = false;
    std::thread thread_;
};

} // namespace quillmoth::platform
