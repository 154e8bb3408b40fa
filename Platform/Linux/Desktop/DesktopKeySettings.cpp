#include "Platform/Linux/Desktop/DesktopKeySettings.h"

#include <QFile>
#include <QStandardPaths>
#include <QXmlStreamReader>

#include <map>
#include <utility>

namespace quillmoth::platform {

namespace {

void append(std::vector<KeyCombination>& list, std::optional<KeyCombination> combination) {
    if (combination)
        list.push_back(std::move(*combination));
}

void append(std::vector<KeyCombination>& list, std::vector<KeyCombination> more) {
    list.insert(list.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

/// The user's file, or else the desktop's.
QByteArray configurationFile(const QString& name) {
    QFile file(QStandardPaths::locate(QStandardPaths::GenericConfigLocation, name));
    return !file.fileName().isEmpty() && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

struct SchemaUser {
    const char* windowManager;
    std::vector<std::string> schemas;
};

const std::vector<SchemaUser>& schemaUsers() {
    static const std::vector<std::string> gnome = {
        "org.gnome.desktop.wm.keybindings", "org.gnome.mutter.keybindings", "org.gnome.shell.keybindings",
        "org.gnome.settings-daemon.plugins.media-keys"};
    static const std::vector<SchemaUser> users = {
        {"GNOME Shell", gnome},
        {"Mutter", gnome},
        {"Metacity", gnome},
        {"Mutter (Muffin)",
         {"org.cinnamon.desktop.keybindings.wm", "org.cinnamon.desktop.keybindings.media-keys"}},
        {"Marco",
         {"org.mate.Marco.global-keybindings", "org.mate.Marco.window-keybindings",
          "org.mate.SettingsDaemon.plugins.media-keys"}}};
    return users;
}

} // namespace

std::vector<KeyCombination> desktopKeySettings(const std::string& windowManager) {
    if (windowManager == "Openbox")
        return openboxKeys(configurationFile(QStringLiteral("openbox/rc.xml")));
    if (windowManager == "Xfwm4")
        return xfceKeys(configurationFile(
            QStringLiteral("xfce4/xfconf/xfce-perchannel-xml/xfce4-keyboard-shortcuts.xml")));
    std::vector<KeyCombination> keys;
    for (const auto& [name, schemas] : schemaUsers()) {
        if (windowManager != name)
            continue;
        for (const auto& schema : schemas)
            append(keys, schemaKeys(schema));
    }
    return keys;
}

std::vector<KeyCombination> openboxKeys(const QByteArray& xml) {
    std::vector<KeyCombination> keys;
    QXmlStreamReader reader(xml);
    int depth = 0;
    while (!reader.atEnd()) {
        const auto token = reader.readNext();
        if (reader.name() != QLatin1String("keybind"))
            continue;
        // What is nested in a binding is the next key of its chain.
        if (token == QXmlStreamReader::EndElement)
            --depth;
        else if (token == QXmlStreamReader::StartElement && depth++ == 0) {
            // Several keys for the same actions stand side by side.
            for (const QString& key :
                 reader.attributes().value(QLatin1String("key")).toString().split(u' ', Qt::SkipEmptyParts))
                append(keys, openboxCombination(key.toStdString()));
        }
    }
    return keys;
}

std::vector<KeyCombination> xfceKeys(const QByteArray& xml) {
    // "xfwm4/custom", "xfwm4/default", and so for "commands".
    std::map<QString, std::vector<KeyCombination>> groups;
    QXmlStreamReader reader(xml);
    QStringList path;
    while (!reader.atEnd()) {
        const auto token = reader.readNext();
        if (token == QXmlStreamReader::EndElement && !path.isEmpty())
            path.removeLast();
        if (token != QXmlStreamReader::StartElement)
            continue;
        const QString name = reader.attributes().value(QLatin1String("name")).toString();
        if (path.size() == 3 && name != QLatin1String("override"))
            append(groups[path[1] + u'/' + path[2]], acceleratorCombination(name.toStdString()));
        path << name;
    }
    std::vector<KeyCombination> keys;
    for (const char* section : {"xfwm4", "commands"}) {
        auto& own = groups[QString(section) + "/custom"];
        append(keys, std::move(own.empty() ? groups[QString(section) + "/default"] : own));
    }
    return keys;
}

} // namespace quillmoth::platform
