#pragma once

#include "Platform/Linux/Gnome/GnomeExtension.h"

#include <QObject>

#include <chrono>
#include <functional>
#include <optional>

namespace quillmoth::platform {

/// The application in front: as the extension tells it, or else the one whose window says on the
/// accessibility bus that it is the active one. While a window of this program has the keyboard, and for a
/// moment behind that, the one before counts. Main thread.
class GnomeFront {
public:
    /// `extension` outlives the object. `activeProcess` asks the accessibility bus.
    GnomeFront(GnomeExtension& extension, std::function<std::optional<std::int64_t>()> activeProcess);

    /// Never of this process; none where it is not known.
    [[nodiscard]] std::optional<GnomeWindow> window();

    /// What its users call it, such as "Kate"; empty where that is not known.
    [[nodiscard]] std::string name();

    /// Whether it is a terminal. `hasOtherFocus` as for isTerminalProcess.
    [[nodiscard]] bool isTerminal(const std::function<bool(std::int64_t process)>& hasOtherFocus);

    /// Whether it pastes with other keys than most.
    [[nodiscard]] bool hasOwnPasteKeys();

private:
    [[nodiscard]] bool isOwnWindowInFront() const;

    GnomeExtension& extension_;
    std::function<std::optional<std::int64_t>()> activeProcess_;
    std::optional<GnomeWindow> last_;
    std::chrono::steady_clock::time_point lostFocus_;
    QObject context_;
};

} // namespace quillmoth::platform
