#include "Platform/Linux/Gnome/GnomeExtensionFiles.h"

#include "Platform/Linux/Gnome/GnomeKeySettings.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>

namespace quillmoth::platform {

namespace {

const auto kShellService = QStringLiteral("org.gnome.Shell");
constexpr int kShellAnswerLimit = 250;
/// The first one whose extensions are modules.
constexpr int kFirstWithModules = 45;

QString folderOfExtension() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/gnome-shell/extensions/") + QLatin1String(kShellExtensionIdentifier);
}

QByteArray shipped(const QString& name) {
    QFile file(QStringLiteral(":/gnome-extension/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool write(const QString& name, const QByteArray& content) {
    QSaveFile file(folderOfExtension() + QLatin1Char('/') + name);
    return !content.isEmpty() && file.open(QIODevice::WriteOnly) && file.write(content) == content.size() &&
           file.commit();
}

} // namespace

std::string shellVersion() {
    QDBusMessage message = QDBusMessage::createMethodCall(kShellService, QStringLiteral("/org/gnome/Shell"),
                                                          QStringLiteral("org.freedesktop.DBus.Properties"),
                                                          QStringLiteral("Get"));
    message.setArguments({kShellService, QStringLiteral("ShellVersion")});
    message.setAutoStartService(false);
    const QDBusMessage answer = QDBusConnection::sessionBus().call(message, QDBus::Block, kShellAnswerLimit);
    if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty())
        return {};
    return answer.arguments().constFirst().value<QDBusVariant>().variant().toString().toStdString();
}

std::string installShellExtension(const std::string& version) {
    const int major = QString::fromStdString(version).section(QLatin1Char('.'), 0, 0).toInt();
    const QString form = major < kFirstWithModules ? QStringLiteral("43.js") : QStringLiteral("45.js");
    const QByteArray code = shipped(QStringLiteral("head-") + form) + shipped(QStringLiteral("service.js")) +
                            shipped(QStringLiteral("foot-") + form);
    const QString folder = folderOfExtension();
    if (!QDir().mkpath(folder) ||
        !write(QStringLiteral("metadata.json"), shipped(QStringLiteral("metadata.json"))) ||
        !write(QStringLiteral("extension.js"), code))
        return "The extension cannot be written to " + folder.toStdString() + ".";
    return setShellExtensionEnabled(kShellExtensionIdentifier, true)
               ? std::string()
               : "GNOME’s settings do not let the extension be switched on.";
}

void removeShellExtension() {
    setShellExtensionEnabled(kShellExtensionIdentifier, false);
    QDir(folderOfExtension()).removeRecursively();
}

bool isShellExtensionInstalled() {
    return QFile::exists(folderOfExtension() + QStringLiteral("/extension.js")) &&
           isShellExtensionEnabled(kShellExtensionIdentifier);
}

} // namespace quillmoth::platform
