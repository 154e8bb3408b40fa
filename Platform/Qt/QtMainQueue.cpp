#include "Platform/Qt/QtMainQueue.h"

#include <QBasicTimer>
#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QTimerEvent>

#include <algorithm>
#include <deque>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

namespace quillmoth::platform {

namespace {

using Work = std::function<void()>;
using SteadyClock = std::chrono::steady_clock;

/// A timer of Qt counts whole milliseconds in an int; a longer wait is taken in several steps.
constexpr std::chrono::hours kLongestTimer{24};

QEvent::Type wakeUpEventType() {
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

/// The first moment that is not before `delay` from now; the end of time for what lies beyond it.
SteadyClock::time_point deadlineAfter(MainQueue::Seconds delay) {
    const auto now = SteadyClock::now();
    const MainQueue::Seconds longest = SteadyClock::time_point::max() - now;
    // Half of what is left: far enough from the rounding at the end of the range.
    if (!(delay < longest / 2))
        return SteadyClock::time_point::max();
    return now + std::chrono::ceil<SteadyClock::duration>(delay);
}

} // namespace

class QtMainQueue::Receiver final : public QObject {
public:
    Receiver() {
        connect(QCoreApplication::instance(), &QObject::destroyed, this, [this] { close(); });
    }

    ~Receiver() override { close(); }

    void add(Work work) {
        const std::lock_guard lock(mutex_);
        if (closed_)
            return;
        incoming_.push_back({SteadyClock::now(), std::move(work)});
        requestWakeUp();
    }

    void addAt(SteadyClock::time_point deadline, Work work) {
        const std::lock_guard lock(mutex_);
        if (closed_)
            return;
        const auto position = delayed_.emplace(deadline, std::move(work));
        // The timer belongs to the main thread, which sets it for the first of them.
        if (position == delayed_.begin())
            requestWakeUp();
    }

protected:
    bool event(QEvent* event) override {
        if (event->type() == wakeUpEventType()) {
            drain();
            return true;
        }
        return QObject::event(event);
    }

    void timerEvent(QTimerEvent* event) override {
        if (event->timerId() == timer_.timerId())
            drain();
    }

private:
    struct Queued {
        SteadyClock::time_point moment;
        Work work;
    };

    /// Called with the mutex held, so that the event is a thing of the past for whoever locks it next.
    void requestWakeUp() {
        if (std::exchange(wakeUpRequested_, true))
            return;
        QCoreApplication::postEvent(this, new QEvent(wakeUpEventType()));
    }

    void collect() {
        const std::lock_guard lock(mutex_);
        wakeUpRequested_ = false;
        // Both are in the order of their moments; so is what comes of them.
        auto due = delayed_.begin();
        const auto firstLater = delayed_.upper_bound(SteadyClock::now());
        for (auto& [moment, work] : incoming_) {
            for (; due != firstLater && due->first <= moment; ++due)
                ready_.push_back(std::move(due->second));
            ready_.push_back(std::move(work));
        }
        for (; due != firstLater; ++due)
            ready_.push_back(std::move(due->second));
        delayed_.erase(delayed_.begin(), firstLater);
        incoming_.clear();
        // A loop that the first piece of work opens has to come by the others.
        if (ready_.size() > 1)
            requestWakeUp();
        setTimer();
    }

    void setTimer() {
        if (delayed_.empty()) {
            timer_.stop();
            return;
        }
        const auto wait =
            std::min<SteadyClock::duration>(delayed_.begin()->first - SteadyClock::now(), kLongestTimer);
        const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(wait).count();
        timer_.start(static_cast<int>(std::max<std::int64_t>(milliseconds, 0)), Qt::PreciseTimer, this);
    }

    void drain() {
        collect();
        for (auto count = ready_.size(); count > 0 && !ready_.empty(); --count) {
            const Work work = std::move(ready_.front());
            ready_.pop_front();
            work();
        }
    }

    void close() {
        // Destroying work may call into the queue: outside the lock.
        std::vector<Queued> incoming;
        std::multimap<SteadyClock::time_point, Work> delayed;
        {
            const std::lock_guard lock(mutex_);
            closed_ = true;
            incoming.swap(incoming_);
            delayed.swap(delayed_);
        }
        timer_.stop();
        std::deque<Work>().swap(ready_);
    }

    std::mutex mutex_;
    std::vector<Queued> incoming_;
    std::multimap<SteadyClock::time_point, Work> delayed_;
    bool wakeUpRequested_ = false;
    bool closed_ = false;
    // Main thread only.
    std::deque<Work> ready_;
    QBasicTimer timer_;
};

QtMainQueue::QtMainQueue() : receiver_(std::make_unique<Receiver>()) {}

QtMainQueue::~QtMainQueue() = default;

void QtMainQueue::async(std::function<void()> work) {
    receiver_->add(std::move(work));
}

void QtMainQueue::asyncAfter(Seconds delay, std::function<void()> work) {
    if (!(delay > Seconds::zero()))
        receiver_->add(std::move(work));
    else
        receiver_->addAt(deadlineAfter(delay), std::move(work));
}

} // namespace quillmoth::platform
