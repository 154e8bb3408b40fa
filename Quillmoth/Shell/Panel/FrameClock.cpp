#include "Quillmoth/Shell/Panel/FrameClock.h"

namespace quillmoth {

FrameClock::FrameClock(int intervalMilliseconds, std::function<void()> work)
    : interval_(intervalMilliseconds), work_(std::move(work)) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { run(); });
}

void FrameClock::request() {
    if (timer_.isActive())
        return;
    const qint64 elapsed = sinceLast_.isValid() ? sinceLast_.elapsed() : interval_;
    if (elapsed >= interval_)
        run();
    else
        timer_.start(static_cast<int>(interval_ - elapsed));
}

void FrameClock::run() {
    timer_.stop();
    sinceLast_.start();
    work_();
}

} // namespace quillmoth
