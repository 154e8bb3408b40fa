#include "Platform/Linux/KWin/KWinFront.h"

#include "Platform/Linux/KWin/SessionBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <unistd.h>
#include <utility>

namespace quillmoth::platform {

namespace {

const QString kWindowManager = QStringLiteral("org.kde.KWin");
const QString kFrontPath = QStringLiteral("/org/quillmoth/Front");

/// %1 is where this program is on the bus. KWin 6 has given its words other names.
constexpr const char* kTellingScript = R"(function tell(window) {
    callDBus("%1", "/org/quillmoth/Front", "org.quillmoth.Front", "activated",
             window ? String(window.pid) : "", window ? String(window.resourceClass) : "",
             window ? String(window.internalId) : "");
}
const activated = workspace.windowActivated || workspace.clientActivated;
activated.connect(tell);
tell(workspace.activeWindow || workspace.activeClient);
)";

/// %1 is KWin's name of a window.
constexpr const char* kActivatingScript =
    R"(const windows = workspace.windowList ? workspace.windowList() : workspace.clientList();
for (const window of windows) {
    if (String(window.internalId) !== "%1")
        continue;
    if (workspace.windowList)
        workspace.activeWindow = window;
    else
        workspace.activeClient = window;
}
)";

} // namespace

KWinFront::KWinFront()
    : service_(kWindowManager, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForOwnerChange) {
    QDBusConnection::sessionBus().registerObject(kFrontPath, this, QDBusConnection::ExportScriptableSlots);
    connect(&service_, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& owner) { follow(owner); });
    follow(ownerOnBus(kWindowManager));
}

KWinFront::~KWinFront() {
    QDBusConnection::sessionBus().unregisterObject(kFrontPath);
}

void KWinFront::follow(const QString& owner) {
    owner_ = owner;
    last_.reset();
    isEmpty_ = true;
    hasBeenTold_ = false;
    teller_.run(owner_, QString::fromLatin1(kTellingScript).arg(QDBusConnection::sessionBus().baseService()));
}

void KWinFront::activate() {
    if (last_)
        activator_.run(owner_, QString::fromLatin1(kActivatingScript).arg(last_->identifier));
}

void KWinFront::activated(const QString& process, const QString& application, const QString& identifier) {
    if (calledFromDBus() && message().service() != owner_)
        return;
    // The first one tells what has been so before, and one of the window in front that the focus came back to
    // it.
    const bool isChange = std::exchange(hasBeenTold_, true) && (!last_ || last_->identifier != identifier);
    bool isNumber = false;
    const qlonglong number = process.toLongLong(&isNumber);
    isEmpty_ = !isNumber || number <= 0;
    if (isEmpty_ || number == getpid())
        return;
    last_ = {.process = number, .application = application.toStdString(), .identifier = identifier};
    if (isChange)
        changed_.emit();
}

} // namespace quillmoth::platform
