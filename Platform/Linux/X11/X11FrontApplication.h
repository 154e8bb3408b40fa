#pragma once

#include "Platform/Linux/X11/Server/X11Connection.h"

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

    /// The text of the PRIMARY selection, where a window of that very process owns it; for programs that can
    /// be asked in no other way, such as terminals. Waits for them for 200 ms at most.
    [[nodiscard]] std::optional<std::string> primarySelectionOf(std::int64_t processIdentifier) const;

    /// The PRIMARY selection of the terminal in front, empty where it has none; none where something else
    /// than a terminal is in front. `hasOtherFocus` as for terminalInFront.
    [[nodiscard]] std::optional<std::string>
    terminalSelection(const std::function<bool(std::int64_t process)>& hasOtherFocus) const;

private:
    X11Connection& connection_;
};

} // namespace quillmoth::platform
