#include "Platform/Linux/Wayland/WaylandConnection.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace quillmoth::platform {

namespace {

/// For poll(2): -1 for a wait without end.
int millisecondsUntil(WaylandConnection::Clock::time_point deadline) {
    if (deadline == WaylandConnection::Clock::time_point::max())
        return -1;
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - WaylandConnection::Clock::now());
    return static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, 3'600'000));
}

} // namespace

Result<std::unique_ptr<WaylandConnection>> WaylandConnection::open() {
    wl_display* display = wl_display_connect(nullptr);
    if (display == nullptr)
        return Error{"no Wayland compositor answers"};
    std::unique_ptr<WaylandConnection> connection(new WaylandConnection(display));
    if (!connection->synchronize())
        return Error{"the Wayland compositor ends the connection"};
    connection->seat_ = connection->bind<wl_seat>(wl_seat_interface, 1);
    return connection;
}

WaylandConnection::WaylandConnection(wl_display* display)
    : display_(display), wakeFile_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    static constexpr wl_registry_listener kListener = {
        .global =
            [](void* data, wl_registry*, std::uint32_t name, const char* interface, std::uint32_t version) {
                // Of several seats the first.
                static_cast<WaylandConnection*>(data)->globals_.try_emplace(interface, Global{name, version});
            },
        .global_remove = [](void*, wl_registry*, std::uint32_t) {},
    };
    registry_ = wl_display_get_registry(display_);
    wl_registry_add_listener(registry_, &kListener, this);
}

WaylandConnection::~WaylandConnection() {
    stop();
    if (seat_ != nullptr)
        wl_seat_destroy(seat_);
    wl_registry_destroy(registry_);
    wl_display_disconnect(display_);
}

void WaylandConnection::start() {
    thread_ = std::thread([this] { run(); });
}

void WaylandConnection::stop() {
    if (!thread_.joinable())
        return;
    post([this] { isStopping_ = true; });
    thread_.join();
}

void* WaylandConnection::bindAny(const wl_interface& interface, std::uint32_t version) {
    const auto found = globals_.find(interface.name);
    if (found == globals_.end())
        return nullptr;
    return wl_registry_bind(registry_, found->second.name, &interface,
                            std::min(version, found->second.version));
}

void WaylandConnection::post(std::function<void()> work) {
    {
        const std::lock_guard lock(mutex_);
        jobs_.push_back(std::move(work));
    }
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = write(wakeFile_.get(), &one, sizeof one);
}

void WaylandConnection::run() {
    bool isOpen = true;
    while (!isStopping_) {
        while (runJob()) {
        }
        if (isStopping_)
            return;
        // Without a compositor there are still those who wait for an answer.
        if (isOpen)
            isOpen = step(alarmTime_);
        else
            awaitWake();
        runAlarm();
    }
}

void WaylandConnection::setAlarm(Clock::time_point when, std::function<void()> work) {
    alarmTime_ = when;
    alarm_ = std::move(work);
}

void WaylandConnection::runAlarm() {
    if (Clock::now() < alarmTime_)
        return;
    alarmTime_ = Clock::time_point::max();
    if (const auto work = std::exchange(alarm_, nullptr))
        work();
}

void WaylandConnection::awaitWake() const {
    pollfd entry = {wakeFile_.get(), POLLIN, 0};
    eventfd_t count = 0;
    if (poll(&entry, 1, -1) > 0)
        eventfd_read(wakeFile_.get(), &count);
}

bool WaylandConnection::runJob() {
    std::function<void()> work;
    {
        const std::lock_guard lock(mutex_);
        if (jobs_.empty() || isStopping_)
            return false;
        work = std::move(jobs_.front());
        jobs_.pop_front();
    }
    work();
    return true;
}

void WaylandConnection::watch(int file, short events, std::function<bool()> ready) {
    watched_[file] = {.events = events, .ready = std::move(ready)};
}

bool WaylandConnection::step(Clock::time_point deadline) {
    while (wl_display_prepare_read(display_) != 0) {
        if (wl_display_dispatch_pending(display_) < 0)
            return false;
    }
    if (wl_display_flush(display_) < 0 && errno != EAGAIN) {
        wl_display_cancel_read(display_);
        return false;
    }
    std::vector<pollfd> entries = {{wl_display_get_fd(display_), POLLIN, 0}, {wakeFile_.get(), POLLIN, 0}};
    for (const auto& [file, watched] : watched_)
        entries.push_back({file, watched.events, 0});
    if (poll(entries.data(), entries.size(), millisecondsUntil(deadline)) <= 0) {
        wl_display_cancel_read(display_);
        return true;
    }
    if (entries[0].revents == 0)
        wl_display_cancel_read(display_);
    else if (wl_display_read_events(display_) < 0)
        return false;
    eventfd_t count = 0;
    if (entries[1].revents != 0)
        eventfd_read(wakeFile_.get(), &count);
    if (wl_display_dispatch_pending(display_) < 0)
        return false;
    std::vector<int> ready;
    for (std::size_t index = 2; index < entries.size(); ++index) {
        if (entries[index].revents != 0)
            ready.push_back(entries[index].fd);
    }
    tellWatchers(ready);
    return true;
}

void WaylandConnection::tellWatchers(const std::vector<int>& ready) {
    for (const int file : ready) {
        const auto found = watched_.find(file);
        if (found == watched_.end())
            continue;
        // A copy: it may be forgotten while it runs.
        const auto handler = found->second.ready;
        if (!handler())
            watched_.erase(file);
    }
}

} // namespace quillmoth::platform
