#include "Platform/Linux/Desktop/SingleInstance.h"

#include "Foundation/Log.h"
#include "Foundation/URL.h"
#include "Platform/Linux/Desktop/InstanceRequest.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QMetaObject>
#include <QStringList>
#include <QVariantMap>

#include <optional>
#include <utility>

namespace quillmoth::platform {

namespace {

constexpr char kIntrospection[] = R"(<interface name="org.freedesktop.Application">
  <method name="Activate">
    <arg type="a{sv}" name="platform_data" direction="in"/>
  </method>
  <method name="Open">
    <arg type="as" name="uris" direction="in"/>
    <arg type="a{sv}" name="platform_data" direction="in"/>
  </method>
  <method name="ActivateAction">
    <arg type="s" name="action_name" direction="in"/>
    <arg type="av" name="parameter" direction="in"/>
    <arg type="a{sv}" name="platform_data" direction="in"/>
  </method>
</interface>
)";

bool isForApplication(const QDBusMessage& message) {
    return message.interface().isEmpty() || message.interface() == QLatin1String(kInstanceInterface);
}

/// None for a call that the interface does not have.
std::optional<InstanceRequest> requestIn(const QDBusMessage& message) {
    const QString call = message.member() + QLatin1Char('(') + message.signature() + QLatin1Char(')');
    if (call == QLatin1String("Activate(a{sv})"))
        return InstanceRequest{InstanceRequest::Kind::activate};
    if (call == QLatin1String("Open(asa{sv})")) {
        InstanceRequest request{InstanceRequest::Kind::open};
        for (const auto& given : message.arguments().constFirst().toStringList()) {
            if (auto url = ownURL(given.toStdString()))
                request.urls.push_back(std::move(*url));
        }
        return request;
    }
    if (call != QLatin1String("ActivateAction(sava{sv})"))
        return std::nullopt;
    const auto kind = actionNamed(message.arguments().constFirst().toString().toStdString());
    return kind ? std::optional(InstanceRequest{*kind}) : std::nullopt;
}

/// The token that lets this process raise its window, empty where the sender had none.
QString activationToken(const QDBusMessage& message) {
    const auto data = qdbus_cast<QVariantMap>(message.arguments().constLast());
    const QString token = data.value(QStringLiteral("activation-token")).toString();
    return token.isEmpty() ? data.value(QStringLiteral("desktop-startup-id")).toString() : token;
}

} // namespace

class SingleInstance::Object final : public QDBusVirtualObject {
public:
    explicit Object(std::function<void(const InstanceRequest&)> handler) : handler_(std::move(handler)) {}

    QString introspect(const QString&) const override { return QLatin1String(kIntrospection); }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        // Qt answers what every object has: introspection, ping.
        if (!isForApplication(message))
            return false;
        const auto request = requestIn(message);
        if (message.isReplyRequired())
            connection.send(
                request ? message.createReply()
                        : message.createErrorReply(QDBusError::UnknownMethod,
                                                   QStringLiteral("Quillmoth knows no such request.")));
        if (!request)
            return true;
        QMetaObject::invokeMethod(
            this,
            [this, request = *request, token = activationToken(message)] {
                // Qt hands this on when a window is next activated.
                if (!token.isEmpty())
                    qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
                handler_(request);
            },
            Qt::QueuedConnection);
        return true;
    }

private:
    std::function<void(const InstanceRequest&)> handler_;
};

SingleInstance::SingleInstance(std::function<void(const InstanceRequest&)> handler)
    : object_(std::make_unique<Object>(std::move(handler))) {}

SingleInstance::~SingleInstance() {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    bus.unregisterService(kInstanceService);
    bus.unregisterObject(kInstancePath);
}

SingleInstance::Claim SingleInstance::claim() {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        logLine("There is no session bus: other starts of Quillmoth will not find this one.");
        return Claim::alone;
    }
    // Before the name, so that whoever finds the name finds the object.
    bus.registerVirtualObject(kInstancePath, object_.get());
    if (bus.registerService(kInstanceService))
        return Claim::owner;
    bus.unregisterObject(kInstancePath);
    return Claim::taken;
}

} // namespace quillmoth::platform
