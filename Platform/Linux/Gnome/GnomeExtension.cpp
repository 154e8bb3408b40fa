#include "Platform/Linux/Gnome/GnomeExtension.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QPoint>
#include <QRect>

#include <utility>

namespace quillmoth::platform {

namespace {

const auto kExtensionService = QStringLiteral("org.quillmoth.Shell");
const auto kExtensionPath = QStringLiteral("/org/quillmoth/Shell");
const auto kExtensionInterface = QStringLiteral("org.quillmoth.Shell1");
constexpr unsigned kExtensionVersion = 1;

constexpr int kAnswerLimit = 250;
/// The shell waits for modifiers, and a little between the keys.
constexpr int kKeysLimit = 600;

QDBusMessage call(const QString& interface, const char* method, const QVariantList& arguments) {
    QDBusMessage message =
        QDBusMessage::createMethodCall(kExtensionService, kExtensionPath, interface, QLatin1String(method));
    message.setArguments(arguments);
    message.setAutoStartService(false);
    return message;
}

} // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const KeyStep& step) {
    argument.beginStructure();
    argument << step.key << step.isDown;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, KeyStep& step) {
    argument.beginStructure();
    argument >> step.key >> step.isDown;
    argument.endStructure();
    return argument;
}

GnomeExtension::GnomeExtension() : bus_(QDBusConnection::sessionBus()) {
    qDBusRegisterMetaType<KeyStep>();
    qDBusRegisterMetaType<QList<KeyStep>>();
    bus_.connect(kExtensionService, kExtensionPath, kExtensionInterface, QStringLiteral("KeyChanged"), this,
                 SLOT(keyChanged(QString, bool)));
    bus_.connect(kExtensionService, kExtensionPath, kExtensionInterface, QStringLiteral("FrontChanged"), this,
                 SLOT(frontChanged()));
    bus_.connect(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                 QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameOwnerChanged"),
                 {kExtensionService}, QString(), this, SLOT(ownerChanged(QString, QString, QString)));
    look();
}

void GnomeExtension::look() {
    const QDBusMessage answer = bus_.call(call(QStringLiteral("org.freedesktop.DBus.Properties"), "Get",
                                               {kExtensionInterface, QStringLiteral("Version")}),
                                          QDBus::Block, kAnswerLimit);
    isThere_ = answer.type() == QDBusMessage::ReplyMessage && !answer.arguments().isEmpty() &&
               answer.arguments().constFirst().value<QDBusVariant>().variant().toUInt() == kExtensionVersion;
}

std::optional<QVariantList> GnomeExtension::ask(const char* method, const QVariantList& arguments,
                                                int milliseconds) {
    if (!isThere_)
        return std::nullopt;
    const QDBusMessage answer =
        bus_.call(call(kExtensionInterface, method, arguments), QDBus::Block, milliseconds);
    return answer.type() == QDBusMessage::ReplyMessage ? std::optional(answer.arguments()) : std::nullopt;
}

std::optional<std::optional<GnomeWindow>> GnomeExtension::front() {
    const auto answer = ask("Front", {}, kAnswerLimit);
    if (!answer || answer->size() != 2)
        return std::nullopt;
    const int process = answer->constFirst().toInt();
    if (process <= 0)
        return std::optional<GnomeWindow>();
    return GnomeWindow{.process = process, .windowClass = answer->constLast().toString().toStdString()};
}

bool GnomeExtension::grabKey(const std::string& accelerator) {
    const auto answer = ask("GrabKey", {QString::fromStdString(accelerator)}, kAnswerLimit);
    return answer && !answer->isEmpty() && answer->constFirst().toBool();
}

void GnomeExtension::releaseKey(const std::string& accelerator) {
    if (!isThere_)
        return;
    bus_.send(call(kExtensionInterface, "ReleaseKey", {QString::fromStdString(accelerator)}));
}

bool GnomeExtension::sendKeys(const std::vector<KeyStep>& steps) {
    const QList<KeyStep> list(steps.begin(), steps.end());
    const auto answer = ask("SendKeys", {QVariant::fromValue(list)}, kKeysLimit);
    return answer && !answer->isEmpty() && answer->constFirst().toBool();
}

void GnomeExtension::place(const DesktopArea& wanted) {
    // The bus keeps the order of calls alone; the window itself comes on another way.
    const auto area = QVariant::fromValue(QRect(wanted.x, wanted.y, wanted.width, wanted.height));
    [[maybe_unused]] const auto answer = ask("PlacePanel", {area}, kAnswerLimit);
}

std::optional<DesktopArea> GnomeExtension::area() {
    const auto answer = ask("Places", {}, kAnswerLimit);
    constexpr int kParts = 3;
    if (!answer || answer->size() != kParts || !answer->at(1).toBool())
        return std::nullopt;
    const auto frame = qdbus_cast<QRect>(answer->at(2));
    return DesktopArea{.x = frame.x(), .y = frame.y(), .width = frame.width(), .height = frame.height()};
}

std::optional<DesktopArea> GnomeExtension::pointer() {
    const auto answer = ask("Places", {}, kAnswerLimit);
    if (!answer || answer->isEmpty())
        return std::nullopt;
    const auto place = qdbus_cast<QPoint>(answer->constFirst());
    return DesktopArea{.x = place.x(), .y = place.y()};
}

void GnomeExtension::keyChanged(const QString& accelerator, bool isDown) {
    keys_.emit(accelerator.toStdString(), isDown);
}

void GnomeExtension::frontChanged() {
    frontChanges_.emit();
}

void GnomeExtension::ownerChanged(const QString&, const QString&, const QString& now) {
    isThere_ = false;
    if (!now.isEmpty())
        look();
    presenceChanges_.emit();
}

} // namespace quillmoth::platform
