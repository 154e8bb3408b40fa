#pragma once

#include <QObject>
#include <functional>

namespace quillmoth::platform {

/// Tells when the session is locked, its screen saver starts or the machine goes to sleep: signals of
/// org.freedesktop.login1 on the system bus, and of the desktops' screen savers on the session bus.
class SessionLockWatch : public QObject {
    Q_OBJECT

public:
    explicit SessionLockWatch(std::function<void()> onLock);

    /// Connects to the buses; later calls do nothing.
    void start();

private Q_SLOTS:
    void lock();
    void lockIf(bool active);

private:
    std::function<void()> onLock_;
    bool isStarted_ = false;
};

} // namespace quillmoth::platform
