#pragma once

#include <cstdint>
#include <string_view>

namespace quillmoth::platform {

/// With which keys an application pastes.
enum class PasteHabit {
    /// Control and V, over what is selected.
    usual,
    /// With none that are safe: it is a terminal.
    none,
    /// Kills the region, and yanks.
    emacs,
    /// Puts the register of the clipboard over what was selected last.
    vim,
    /// Control and V beside what is selected, which is deleted first.
    tk,
};

/// Of an application that is no terminal, by the class or the app_id of its window.
[[nodiscard]] PasteHabit pasteHabitByName(std::string_view name);

/// Whether the process has loaded the library of Tk: its programs have nothing else in common, neither a name
/// nor a property of their windows.
[[nodiscard]] bool usesTk(std::int64_t process);

/// Whether the key that copies elsewhere means something else there.
[[nodiscard]] inline bool copiesOtherwise(PasteHabit habit) {
    return habit != PasteHabit::usual && habit != PasteHabit::tk;
}

} // namespace quillmoth::platform
