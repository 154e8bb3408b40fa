#pragma once

#include "Platform/Linux/X11/Server/X11Connection.h"

#include <cstdint>
#include <functional>
#include <optional>

/// Which windows are terminals: in them the key that copies elsewhere ends what runs.
namespace quillmoth::platform {

/// The process of the window that would receive a key struck now, where that is a terminal; 0 where the
/// process is not known. `hasOtherFocus` as for isTerminalProcess.
[[nodiscard]] std::optional<std::int64_t>
terminalInFront(X11Connection& connection, const std::function<bool(std::int64_t process)>& hasOtherFocus);

} // namespace quillmoth::platform
