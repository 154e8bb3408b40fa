#include "Platform/Linux/X11/X11FrontApplication.h"

#include "Platform/Linux/X11/Selection/X11Selection.h"
#include "Platform/Linux/X11/Server/X11Windows.h"
#include "Platform/Linux/X11/X11Terminals.h"

#include <unistd.h>

namespace quillmoth::platform {

namespace {

constexpr std::chrono::milliseconds kDeadline(200);

} // namespace

std::optional<std::int64_t> X11FrontApplication::processIdentifier() const {
    const auto window = activeWindow(connection_);
    if (window == 0)
        return std::nullopt;
    const auto process = windowProcessIdentifier(connection_, window);
    return process == getpid() ? std::nullopt : process;
}

std::optional<std::string> X11FrontApplication::primarySelectionOf(std::int64_t processIdentifier) const {
    const auto owner = selectionOwner(connection_.get(), XCB_ATOM_PRIMARY);
    if (owner == XCB_WINDOW_NONE || clientProcessIdentifier(connection_.get(), owner) != processIdentifier)
        return std::nullopt;
    return selectionText(XCB_ATOM_PRIMARY, kDeadline);
}

std::optional<std::string>
X11FrontApplication::terminalSelection(const std::function<bool(std::int64_t process)>& hasOtherFocus) const {
    const auto terminal = terminalInFront(connection_, hasOtherFocus);
    if (!terminal)
        return std::nullopt;
    return primarySelectionOf(*terminal).value_or(std::string());
}

} // namespace quillmoth::platform
