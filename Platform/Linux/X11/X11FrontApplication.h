#pragma once

#include "Platform/Linux/Shared/PasteHabits.h"
#include "Platform/Linux/X11/Server/X11Application.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace quillmoth::platform {

/// The application whose window is the active one. Main thread.
class X11FrontApplication {
public:
    /// `connection` outlives the object.
    explicit X11FrontApplication(X11Connection& connection) : connection_(connection) {}

    /// Never this process; none where no window is active.
    [[nodiscard]] std::optional<std::int64_t> processIdentifier() const;

    [[nodiscard]] X11Application application() const { return frontApplication(connection_); }

    /// What its windows call it, such as "Kate"; empty where they do not say.
    [[nodiscard]] std::string name() const;

    /// The text of the PRIMARY selection, where the application owns it. Waits for it for 200 ms at most.
    [[nodiscard]] std::optional<std::string> primarySelection() const;

    /// `hasOtherFocus` as for terminalInFront.
    [[nodiscard]] PasteHabit pasteHabit(const std::function<bool(std::int64_t process)>& hasOtherFocus) const;

    /// The PRIMARY selection where the key that copies elsewhere means something else, empty where there is
    /// none; none where that key copies. `hasOtherFocus` as for terminalInFront.
    [[nodiscard]] std::optional<std::string>
    selectionInsteadOfCopy(const std::function<bool(std::int64_t process)>& hasOtherFocus) const;

private:
    X11Connection& connection_;
};

} // namespace quillmoth::platform
