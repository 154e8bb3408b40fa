#pragma once

#include <QKeyCombination>
#include <QKeySequence>

#include <span>

class QKeyEvent;

/// The keys that the program's windows and its panel answer to. Their shortcuts are made from this one table,
/// and the shortcut recorder refuses what is in it.
namespace quillmoth {

enum class OwnKey {
    closeWindow,
    quit,
    undo,
    redo,
    cut,
    copy,
    paste,
    selectAll,
    continueWelcome,
    toggleSidebar,
    movePresetUp,
    movePresetDown,
    replaceSelection,
    regenerate,
    larger,
    smaller,
    defaultSize,
    cancel,
    history,
    markdown,
    copyAll,
    onTop,
    contextMenu,
};

struct OwnKeyRow {
    OwnKey action;
    QKeyCombination keys;
    /// As a menu would call it.
    const char* title;
};

/// An action with several keys has a row for each.
[[nodiscard]] std::span<const OwnKeyRow> ownKeys();

/// The first key of the action.
[[nodiscard]] QKeySequence ownKeySequence(OwnKey action);

/// Whether the event is one of the action's keys, of the number pad or not.
[[nodiscard]] bool isOwnKey(const QKeyEvent& event, OwnKey action);

} // namespace quillmoth
