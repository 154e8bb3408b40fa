#include "Platform/Linux/Desktop/SchemeHandler.h"

#include "Foundation/Log.h"
#include "Platform/Linux/Desktop/XDGLoginItems.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSaveFile>
#include <QStandardPaths>

namespace quillmoth::platform {

namespace {

const auto kEntryName = QStringLiteral("org.quillmoth.Quillmoth.desktop");
const auto kScheme = QStringLiteral("x-scheme-handler/quillmoth");

bool isInstalled(const QString& ownFolder) {
    for (const QString& folder : QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)) {
        if (folder != ownFolder && QFile::exists(folder + u'/' + kEntryName))
            return true;
    }
    return false;
}

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

std::string schemeHandlerEntry(const std::string& executable) {
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Version=1.4\n"
           "Name=Quillmoth\n"
           "Comment=Ask an AI model about the text that is selected in any application\n"
           "Icon=quillmoth\n"
           "Exec=" +
           quotedForExec(executable) +
           " %U\n"
           "Terminal=false\n"
           "NoDisplay=true\n"
           "StartupNotify=false\n"
           "MimeType=x-scheme-handler/quillmoth;\n";
}

void offerSchemeHandler(const std::string& executable) {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::ApplicationsLocation);
    if (folder.isEmpty() || isInstalled(folder))
        return;
    const QByteArray entry = QByteArray::fromStdString(schemeHandlerEntry(executable));
    const QString path = folder + u'/' + kEntryName;
    if (contentOf(path) == entry)
        return;
    QDir().mkpath(folder);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(entry) != entry.size() || !file.commit()) {
        logLine("Links to Quillmoth will not open it. Could not write \"" + path.toStdString() +
                "\": " + file.errorString().toStdString());
        return;
    }
    if (!QProcess::startDetached(QStringLiteral("xdg-mime"),
                                 {QStringLiteral("default"), kEntryName, kScheme}))
        logLine("Links to Quillmoth may not open it: xdg-mime is not installed.");
}

} // namespace quillmoth::platform
