#include "tests/desktop/support/WaitFor.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <thread>

namespace quillmoth::test {

namespace {

constexpr std::chrono::milliseconds kPause(2);

void turn() {
    if (!QCoreApplication::instance()) {
        std::this_thread::sleep_for(kPause);
        return;
    }
    // A real event loop: what is under test answers as fast as in the program.
    QEventLoop loop;
    QTimer::singleShot(kPause, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace

bool holdsWithin(std::chrono::milliseconds deadline, const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end)
            return false;
        turn();
    }
    return true;
}

bool waitFor(const std::function<bool()>& condition, std::chrono::milliseconds deadline) {
    return holdsWithin(deadline, condition);
}

void letPass(std::chrono::milliseconds time) {
    waitFor([] { return false; }, time);
}

} // namespace quillmoth::test
