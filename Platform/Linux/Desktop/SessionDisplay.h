#pragma once

#include "Foundation/Result.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace quillmoth::platform {

/// Whether the variables XDG_SESSION_TYPE and WAYLAND_DISPLAY tell of a Wayland session.
[[nodiscard]] bool isWaylandSession();

/// Whether there is a display that the toolkit can show windows on. Asked before it is started, since it
/// aborts the process where there is none. Answers with the toolkit's plugins for it, in the form of
/// QT_QPA_PLATFORM; what that variable says is kept. In a Wayland session its own display comes before the X
/// server beside it, to whose windows the desktop gives the keyboard only as it likes. The error
/// says what is wrong and what to do. `pluginFolders` are the toolkit's; `hasXServer` is asked whether
/// the server of the variable DISPLAY answers, and no other answer is waited for.
[[nodiscard]] Result<std::string> findSessionDisplay(const std::vector<std::filesystem::path>& pluginFolders,
                                                     const std::function<bool()>& hasXServer);

} // namespace quillmoth::platform
