#include "Quillmoth/Shell/Windows/MainMenu.h"

#include "KeyboardShortcuts/ShortcutText.h"
#include "Quillmoth/Shell/Looks/OwnKeys.h"
#include "Quillmoth/Shell/Windows/KeyFlags.h"

#include <QChar>
#include <QString>

#include <algorithm>
#include <iterator>

namespace quillmoth {

namespace {

using KeyboardShortcuts::Key;

struct NamedKey {
    Qt::Key key;
    Key position;
};

/// The keys of the table that write nothing.
constexpr NamedKey kNamedKeys[] = {{Qt::Key_Return, Key::return_}, {Qt::Key_Enter, Key::keypadEnter},
                                   {Qt::Key_Escape, Key::escape},  {Qt::Key_Up, Key::upArrow},
                                   {Qt::Key_Down, Key::downArrow}, {Qt::Key_F9, Key::f9},
                                   {Qt::Key_F10, Key::f10}};

std::string keyEquivalent(Qt::Key key, platform::KeyboardLayout& layout) {
    const auto* named = std::find_if(std::begin(kNamedKeys), std::end(kNamedKeys),
                                     [&](const NamedKey& each) { return each.key == key; });
    if (named != std::end(kNamedKeys))
        return KeyboardShortcuts::keyCodeText(named->position.rawValue, layout).value_or("");
    return QString(QChar(key)).toLower().toStdString();
}

} // namespace

std::vector<MainMenuItem> applicationMainMenu(platform::KeyboardLayout& layout) {
    std::vector<MainMenuItem> menu;
    for (const OwnKeyRow& row : ownKeys())
        menu.push_back({.title = row.title,
                        .keyEquivalent = keyEquivalent(row.keys.key(), layout),
                        .modifierMask = keyFlags(row.keys.keyboardModifiers()),
                        .submenu = {}});
    return menu;
}

} // namespace quillmoth
