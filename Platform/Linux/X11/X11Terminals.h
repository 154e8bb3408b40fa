#pragma once

#include "Platform/Linux/X11/Server/X11Connection.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

/// Which windows are terminals: in them the key that copies elsewhere ends what runs.
namespace quillmoth::platform {

/// Whether `name`, one of WM_CLASS or that of a program, is a terminal's.
[[nodiscard]] bool isTerminalName(std::string_view name);

/// Whether the process holds the master side of a pseudo-terminal. False where that cannot be found out.
[[nodiscard]] bool holdsPseudoTerminal(std::int64_t process);

/// The process of the window that would receive a key struck now, where that is a terminal; 0 where the
/// process is not known. A program of another name may have a terminal beside other fields:
/// `hasOtherFocus` says whether it is known that one of those has the focus.
[[nodiscard]] std::optional<std::int64_t>
terminalInFront(X11Connection& connection, const std::function<bool(std::int64_t process)>& hasOtherFocus);

} // namespace quillmoth::platform
