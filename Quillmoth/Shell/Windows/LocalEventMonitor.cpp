#include "Quillmoth/Shell/Windows/LocalEventMonitor.h"

#include <QCoreApplication>

namespace quillmoth {

LocalEventMonitor& LocalEventMonitor::start() {
    QCoreApplication::instance()->installEventFilter(this);
    return *this;
}

bool LocalEventMonitor::eventFilter(QObject* receiver, QEvent* event) {
    // A copy: the callback may drop the monitor.
    const auto callback = callback_;
    return callback(receiver, *event);
}

} // namespace quillmoth
