#include "Platform/Linux/X11/Panel/SessionLockWatch.h"

#include <QDBusConnection>
#include <utility>

namespace quillmoth::platform {

namespace {

constexpr const char* kScreenSavers[] = {"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver",
                                         "org.mate.ScreenSaver", "org.cinnamon.ScreenSaver",
                                         "org.xfce.ScreenSaver"};

} // namespace

SessionLockWatch::SessionLockWatch(std::function<void()> onLock) : onLock_(std::move(onLock)) {}

void SessionLockWatch::start() {
    if (std::exchange(isStarted_, true))
        return;
    auto system = QDBusConnection::systemBus();
    if (system.isConnected()) {
        const QString login = QStringLiteral("org.freedesktop.login1");
        system.connect(login, QString(), login + QStringLiteral(".Session"), QStringLiteral("Lock"), this,
                       SLOT(lock()));
        system.connect(login, QString(), login + QStringLiteral(".Manager"),
                       QStringLiteral("PrepareForSleep"), this, SLOT(lockIf(bool)));
    }
    auto session = QDBusConnection::sessionBus();
    if (!session.isConnected())
        return;
    // Without a sender's name: that would start the service.
    for (const char* name : kScreenSavers)
        session.connect(QString(), QString(), QLatin1String(name), QStringLiteral("ActiveChanged"), this,
                        SLOT(lockIf(bool)));
}

void SessionLockWatch::lock() {
    onLock_();
}

void SessionLockWatch::lockIf(bool active) {
    if (active)
        onLock_();
}

} // namespace quillmoth::platform
