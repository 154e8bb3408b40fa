#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

/// Which programs are terminals: in them the key that copies elsewhere ends what runs.
namespace quillmoth::platform {

/// Whether `name`, one of a window's class or application or that of a program, is a terminal's.
[[nodiscard]] bool isTerminalName(std::string_view name);

/// Whether the process holds the master side of a pseudo-terminal. False where that cannot be found out.
[[nodiscard]] bool holdsPseudoTerminal(std::int64_t process);

/// Whether the process is a terminal, by its name or by what it holds. A program of another name may have a
/// terminal beside other fields: `hasOtherFocus` says whether it is known that one of those has the focus.
[[nodiscard]] bool isTerminalProcess(std::int64_t process,
                                     const std::function<bool(std::int64_t process)>& hasOtherFocus);

} // namespace quillmoth::platform
