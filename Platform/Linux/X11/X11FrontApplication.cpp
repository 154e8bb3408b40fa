#include "Platform/Linux/X11/X11FrontApplication.h"

#include "Platform/Linux/X11/Selection/X11Selection.h"
#include "Platform/Linux/X11/Server/X11Windows.h"
#include "Platform/Linux/X11/X11Terminals.h"

#include <unistd.h>

#include <algorithm>

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

std::string X11FrontApplication::name() const {
    const X11ClassNames names = classNamesOf(connection_, activeWindow(connection_));
    const std::string& known = names.classOfAll.empty() ? names.instance : names.classOfAll;
    // Some put their domain before it.
    std::string name = known.substr(known.rfind('.') + 1);
    if (!name.empty() && name.front() >= 'a' && name.front() <= 'z')
        name.front() = static_cast<char>(name.front() - 'a' + 'A');
    return name;
}

std::optional<std::string> X11FrontApplication::primarySelection() const {
    const auto owner = selectionOwner(connection_.get(), XCB_ATOM_PRIMARY);
    if (owner == XCB_WINDOW_NONE || !isPartOf(connection_, application(), owner))
        return std::nullopt;
    return selectionText(XCB_ATOM_PRIMARY, kDeadline);
}

PasteHabit
X11FrontApplication::pasteHabit(const std::function<bool(std::int64_t process)>& hasOtherFocus) const {
    if (terminalInFront(connection_, hasOtherFocus))
        return PasteHabit::none;
    const PasteHabit habit =
        pasteHabitByName(classNamesOf(connection_, activeWindow(connection_)).classOfAll);
    if (habit != PasteHabit::usual)
        return habit;
    const auto processes = application().processes;
    return std::any_of(processes.begin(), processes.end(), usesTk) ? PasteHabit::tk : PasteHabit::usual;
}

std::optional<std::string> X11FrontApplication::selectionInsteadOfCopy(
    const std::function<bool(std::int64_t process)>& hasOtherFocus) const {
    return copiesOtherwise(pasteHabit(hasOtherFocus)) ? std::optional(primarySelection().value_or(""))
                                                      : std::nullopt;
}

} // namespace quillmoth::platform
