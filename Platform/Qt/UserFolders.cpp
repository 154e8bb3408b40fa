#include "Platform/Qt/UserFolders.h"

#include <QDir>
#include <QStandardPaths>

namespace quillmoth::platform {

std::string documentsFolder() {
    const QString known = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString folder = QDir::isAbsolutePath(known) ? known : QDir::home().filePath("Documents");
    return QDir::cleanPath(folder).toStdString();
}

std::string defaultsFilePath() {
    const QString configured = qEnvironmentVariable("XDG_CONFIG_HOME");
    // A relative path is to be ignored (XDG Base Directory Specification).
    const QString folder = QDir::isAbsolutePath(configured) ? configured : QDir::home().filePath(".config");
    return QDir::cleanPath(folder + "/quillmoth/defaults.json").toStdString();
}

} // namespace quillmoth::platform
