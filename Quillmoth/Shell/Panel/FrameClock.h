#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include <functional>

namespace quillmoth {

/// Runs a piece of work at most once a display frame, however often it is asked for: at once where the last
/// time is a frame ago, otherwise when that frame has passed.
class FrameClock {
public:
    /// `intervalMilliseconds`: the length of a frame.
    FrameClock(int intervalMilliseconds, std::function<void()> work);

    void request();

private:
    void run();

    int interval_;
    std::function<void()> work_;
    QElapsedTimer sinceLast_;
    QTimer timer_;
};

} // namespace quillmoth
