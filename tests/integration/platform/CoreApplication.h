#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <functional>

namespace quillmoth::test {

/// Qt's application without arguments; one at a time.
struct CoreApplication {
    int count = 1;
    char name[5] = "test";
    char* arguments[2] = {name, nullptr};
    QCoreApplication application{count, arguments};
};

/// Handles events until the condition holds; false where it does not within the milliseconds.
inline bool eventually(const std::function<bool()>& condition, int milliseconds = 5000) {
    QDeadlineTimer deadline(milliseconds);
    while (!condition() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
    return condition();
}

} // namespace quillmoth::test
