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

MutterKeys::~MutterKeys() {
    end();
}

bool MutterKeys::areThere() {
    auto* bus = QDBusConnection::sessionBus().interface();
    return bus != nullptr && bus->isServiceRegistered(kMutterService).value();
}

bool MutterKeys::begin() {
    if (!session_.isEmpty())
        return true;
    const QDBusMessage created = askMutter(kMutterPath, kMutterService, "CreateSession");
    if (!isReply(created) || created.arguments().isEmpty())
        return false;
    session_ = created.arguments().constFirst().value<QDBusObjectPath>().path();
    return isReply(askMutter(session_, kMutterSession, "Start"));
}

bool MutterKeys::send(const std::vector<KeyStep>& steps) {
    bool isSent = begin();
    for (const KeyStep& step : steps) {
        if (!isSent)
            break;
        isSent =
            isReply(askMutter(session_, kMutterSession, "NotifyKeyboardKeycode", {step.key, step.isDown}));
        std::this_thread::sleep_for(kMutterKeyGap);
    }
    return isSent;
}

void MutterKeys::end() {
    if (!session_.isEmpty())
        askMutter(session_, kMutterSession, "Stop");
    session_.clear();
}

} // namespace quillmoth::platform
