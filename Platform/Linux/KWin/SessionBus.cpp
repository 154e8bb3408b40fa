#include "Platform/Linux/KWin/SessionBus.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace quillmoth::platform {

namespace {

constexpr int kAnswerLimitMilliseconds = 250;

} // namespace

std::optional<QVariantList> askOnBus(const BusObject& object, const QString& method,
                                     const QVariantList& arguments) {
    const auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return std::nullopt;
    auto call = QDBusMessage::createMethodCall(object.service, object.path, object.interface, method);
    call.setAutoStartService(false);
    call.setArguments(arguments);
    const QDBusMessage answer = bus.call(call, QDBus::Block, kAnswerLimitMilliseconds);
    return answer.type() == QDBusMessage::ReplyMessage ? std::optional(answer.arguments()) : std::nullopt;
}

QString ownerOnBus(const QString& service) {
    const QString bus = QStringLiteral("org.freedesktop.DBus");
    const auto answer = askOnBus({bus, QStringLiteral("/org/freedesktop/DBus"), bus},
                                 QStringLiteral("GetNameOwner"), {service});
    return answer && !answer->isEmpty() ? answer->constFirst().toString() : QString();
}

} // namespace quillmoth::platform
