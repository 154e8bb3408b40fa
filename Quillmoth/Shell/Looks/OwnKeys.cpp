#include "Quillmoth/Shell/Looks/OwnKeys.h"

#include <QKeyEvent>

#include <algorithm>
#include <array>

namespace quillmoth {

namespace {

// "+" needs Shift on many layouts and none on others. The toolkit makes the keys of editing itself.
constexpr std::array kOwnKeys{
    OwnKeyRow{OwnKey::closeWindow, Qt::CTRL | Qt::Key_W, "Close"},
    OwnKeyRow{OwnKey::quit, Qt::CTRL | Qt::Key_Q, "Quit"},
    OwnKeyRow{OwnKey::undo, Qt::CTRL | Qt::Key_Z, "Undo"},
    OwnKeyRow{OwnKey::redo, Qt::CTRL | Qt::SHIFT | Qt::Key_Z, "Redo"},
    OwnKeyRow{OwnKey::cut, Qt::CTRL | Qt::Key_X, "Cut"},
    OwnKeyRow{OwnKey::copy, Qt::CTRL | Qt::Key_C, "Copy"},
    OwnKeyRow{OwnKey::paste, Qt::CTRL | Qt::Key_V, "Paste"},
    OwnKeyRow{OwnKey::selectAll, Qt::CTRL | Qt::Key_A, "Select All"},
    OwnKeyRow{OwnKey::continueWelcome, Qt::Key_Return, "Continue"},
    OwnKeyRow{OwnKey::toggleSidebar, Qt::Key_F9, "Toggle Sidebar"},
    OwnKeyRow{OwnKey::movePresetUp, Qt::ALT | Qt::Key_Up, "Move Preset Up"},
    OwnKeyRow{OwnKey::movePresetDown, Qt::ALT | Qt::Key_Down, "Move Preset Down"},
    OwnKeyRow{OwnKey::replaceSelection, Qt::CTRL | Qt::Key_Return, "Replace Selection"},
    OwnKeyRow{OwnKey::replaceSelection, Qt::CTRL | Qt::Key_Enter, "Replace Selection"},
    OwnKeyRow{OwnKey::regenerate, Qt::CTRL | Qt::Key_R, "Regenerate"},
    OwnKeyRow{OwnKey::larger, Qt::CTRL | Qt::Key_Plus, "Larger Text"},
    OwnKeyRow{OwnKey::larger, Qt::CTRL | Qt::SHIFT | Qt::Key_Plus, "Larger Text"},
    OwnKeyRow{OwnKey::larger, Qt::CTRL | Qt::Key_Equal, "Larger Text"},
    OwnKeyRow{OwnKey::larger, Qt::CTRL | Qt::SHIFT | Qt::Key_Equal, "Larger Text"},
    OwnKeyRow{OwnKey::smaller, Qt::CTRL | Qt::Key_Minus, "Smaller Text"},
    OwnKeyRow{OwnKey::defaultSize, Qt::CTRL | Qt::Key_0, "Default Text Size"},
    OwnKeyRow{OwnKey::cancel, Qt::Key_Escape, "Cancel"},
    OwnKeyRow{OwnKey::history, Qt::CTRL | Qt::Key_H, "History"},
    OwnKeyRow{OwnKey::markdown, Qt::CTRL | Qt::Key_M, "Markdown"},
    OwnKeyRow{OwnKey::copyAll, Qt::CTRL | Qt::SHIFT | Qt::Key_C, "Copy All"},
    OwnKeyRow{OwnKey::onTop, Qt::CTRL | Qt::Key_T, "On Top"},
    OwnKeyRow{OwnKey::contextMenu, Qt::SHIFT | Qt::Key_F10, "Context Menu"},
};

} // namespace

std::span<const OwnKeyRow> ownKeys() {
    return kOwnKeys;
}

QKeySequence ownKeySequence(OwnKey action) {
    const auto* row = std::find_if(kOwnKeys.begin(), kOwnKeys.end(),
                                   [&](const OwnKeyRow& each) { return each.action == action; });
    return row == kOwnKeys.end() ? QKeySequence() : QKeySequence(row->keys);
}

bool isOwnKey(const QKeyEvent& event, OwnKey action) {
    const QKeyCombination pressed(event.modifiers() & ~Qt::KeypadModifier, static_cast<Qt::Key>(event.key()));
    return std::any_of(kOwnKeys.begin(), kOwnKeys.end(),
                       [&](const OwnKeyRow& each) { return each.action == action && each.keys == pressed; });
}

} // namespace quillmoth
