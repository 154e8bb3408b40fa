#include "Platform/Linux/KWin/KWinFront.h"

#include "Foundation/Log.h"
#include "Platform/Linux/KWin/SessionBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDir>
#include <unistd.h>
#include <utility>

namespace quillmoth::platform {

namespace {

const QString kWindowManager = QStringLiteral("org.kde.KWin");
const QString kFrontPath = QStringLiteral("/org/quillmoth/Front");
const QString kScriptInterface = QStringLiteral("org.kde.kwin.Scripting");
const QString kScriptPath = QStringLiteral("/Scripting");

constexpr int kScriptLimitMilliseconds = 2000;

/// %1 is where this program is on the bus. KWin 6 has given its words other names.
constexpr const char* kScript = R"(function tell(window) {
    callDBus("%1", "/org/quillmoth/Front", "org.quillmoth.Front", "activated",
             window ? String(window.pid) : "", window ? String(window.resourceClass) : "");
}
const activated = workspace.windowActivated || workspace.clientActivated;
activated.connect(tell);
tell(workspace.activeWindow || workspace.activeClient);
)";

} // namespace

KWinFront::KWinFront()
    : service_(kWindowManager, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForOwnerChange),
      script_(qEnvironmentVariable("XDG_RUNTIME_DIR", QDir::tempPath()) +
              QStringLiteral("/quillmoth-XXXXXX.js")),
      plugin_(QStringLiteral("quillmoth-%1").arg(getpid())) {
    auto bus = QDBusConnection::sessionBus();
    bus.registerObject(kFrontPath, this, QDBusConnection::ExportScriptableSlots);
    if (!script_.open()) {
        logLine("KWin cannot be asked for the program in front: no file for its script can be written.");
        return;
    }
    script_.write(QString::fromLatin1(kScript).arg(bus.baseService()).toUtf8());
    script_.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    script_.close();
    connect(&service_, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& owner) { load(owner); });
    load(ownerOnBus(kWindowManager));
}

KWinFront::~KWinFront() {
    QDBusConnection::sessionBus().unregisterObject(kFrontPath);
    if (owner_.isEmpty())
        return;
    [[maybe_unused]] const auto answer =
        askOnBus({owner_, kScriptPath, kScriptInterface}, QStringLiteral("unloadScript"), {plugin_});
}

void KWinFront::load(const QString& owner) {
    owner_ = owner;
    last_.reset();
    isEmpty_ = true;
    if (owner_.isEmpty())
        return;
    send("loadScript", {script_.fileName(), plugin_}, [this](const QDBusPendingCallWatcher& call) {
        const QDBusPendingReply<int> answer = call;
        if (answer.isError() || answer.value() < 0)
            logLine("KWin does not tell which program is in front: " +
                    answer.error().message().toStdString());
        else
            start();
    });
}

void KWinFront::start() {
    // All scripts that do not run yet.
    send("start", {}, [](const QDBusPendingCallWatcher&) {});
}

void KWinFront::send(const char* method, const QVariantList& arguments,
                     std::function<void(const QDBusPendingCallWatcher&)> answered) {
    auto call = QDBusMessage::createMethodCall(owner_, kScriptPath, kScriptInterface, QLatin1String(method));
    call.setArguments(arguments);
    auto* watcher = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(call, kScriptLimitMilliseconds), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [answered = std::move(answered), watcher] {
        answered(*watcher);
        watcher->deleteLater();
    });
}

void KWinFront::activated(const QString& process, const QString& application) {
    if (calledFromDBus() && message().service() != owner_)
        return;
    hasBeenTold_ = true;
    bool isNumber = false;
    const qlonglong number = process.toLongLong(&isNumber);
    isEmpty_ = !isNumber || number <= 0;
    if (isEmpty_ || number == getpid())
        return;
    last_ = {.process = number, .application = application.toStdString()};
    changed_.emit();
}

} // namespace quillmoth::platform
