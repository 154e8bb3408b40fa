#include "Platform/Linux/Gnome/MutterKeys.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>

#include <chrono>
#include <thread>

namespace quillmoth::platform {

namespace {

const auto kMutterService = QStringLiteral("org.gnome.Mutter.RemoteDesktop");
const auto kMutterPath = QStringLiteral("/org/gnome/Mutter/RemoteDesktop");
const auto kMutterSession = QStringLiteral("org.gnome.Mutter.RemoteDesktop.Session");

constexpr int kMutterAnswerLimit = 250;
constexpr std::chrono::milliseconds kMutterKeyGap{1};

QDBusMessage askMutter(const QString& path, const QString& interface, const char* method,
                       const QVariantList& arguments = {}) {
    QDBusMessage message =
        QDBusMessage::createMethodCall(kMutterService, path, interface, QLatin1String(method));
    message.setArguments(arguments);
    message.setAutoStartService(false);
    return QDBusConnection::sessionBus().call(message, QDBus::Block, kMutterAnswerLimit);
}

bool isReply(const QDBusMessage& message) {
    return message.type() == QDBusMessage::ReplyMessage;
}

} // namespace

bool hasMutterKeys() {
    auto* bus = QDBusConnection::sessionBus().interface();
    return bus != nullptr && bus->isServiceRegistered(kMutterService).value();
}

bool sendMutterKeys(const std::vector<KeyStep>& steps) {
    const QDBusMessage created = askMutter(kMutterPath, kMutterService, "CreateSession");
    if (!isReply(created) || created.arguments().isEmpty())
        return false;
    const QString session = created.arguments().constFirst().value<QDBusObjectPath>().path();
    bool isSent = isReply(askMutter(session, kMutterSession, "Start"));
    for (const KeyStep& step : steps) {
        if (!isSent)
            break;
        isSent =
            isReply(askMutter(session, kMutterSession, "NotifyKeyboardKeycode", {step.key, step.isDown}));
        std::this_thread::sleep_for(kMutterKeyGap);
    }
    // What it holds down goes up with its end.
    askMutter(session, kMutterSession, "Stop");
    return isSent;
}

} // namespace quillmoth::platform
