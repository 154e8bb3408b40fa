#include "Platform/Linux/Tray/StatusMenu.h"

#include <QKeyEvent>
#include <utility>

namespace quillmoth::platform {

namespace {

QString escapedTitle(const std::string& title) {
    // A lone ampersand would mark a mnemonic.
    return QString::fromStdString(title).replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace

StatusMenu::StatusMenu(std::vector<MenuItem> items) {
    for (auto& item : items) {
        if (item.title.empty()) {
            addSeparator();
            continue;
        }
        QAction* action = addAction(escapedTitle(item.title));
        if (!item.keyEquivalent.empty())
            action->setShortcut(
                QKeySequence(QStringLiteral("Ctrl+") + QString::fromStdString(item.keyEquivalent).toUpper()));
        action->setShortcutVisibleInContextMenu(true);
        if (item.action)
            connect(action, &QAction::triggered, this, std::move(item.action));
    }
}

bool StatusMenu::event(QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return QMenu::event(event);
    const QKeySequence pressed(static_cast<QKeyEvent*>(event)->keyCombination());
    for (QAction* action : actions()) {
        if (action->shortcut().isEmpty() || action->shortcut() != pressed)
            continue;
        close();
        action->trigger();
        return true;
    }
    return QMenu::event(event);
}

} // namespace quillmoth::platform
