#include "Platform/Linux/X11/X11FrontApplication.h"

#include "Foundation/ASCII.h"
#include "Platform/Linux/X11/Selection/X11Selection.h"
#include "Platform/Linux/X11/Server/X11Windows.h"
#include "Platform/Linux/X11/X11Terminals.h"

#include <unistd.h>

#include <algorithm>
#include <fstream>

namespace quillmoth::platform {

namespace {

constexpr std::chrono::milliseconds kDeadline(200);

struct Habit {
    /// What the class of its windows begins with, in small letters.
    std::string_view name;
    PasteHabit habit;
};

/// Those that paste otherwise than most. Each row is tried with the program itself by the matrix of desktop
/// tests.
constexpr Habit kHabits[] = {
    {"emacs", PasteHabit::emacs},
    {"gvim", PasteHabit::vim},
};

/// Its programs have nothing else in common, neither a name nor a property of their windows.
bool usesTk(const X11Application& application) {
    return std::any_of(application.processes.begin(), application.processes.end(), [](std::int64_t process) {
        std::ifstream file("/proc/" + std::to_string(process) + "/maps");
        std::string line;
        while (std::getline(file, line)) {
            if (line.find("/libtk8") != std::string::npos || line.find("/libtk9") != std::string::npos)
                return true;
        }
        return false;
    });
}

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
    const std::string name = lowercasedASCII(classNamesOf(connection_, activeWindow(connection_)).classOfAll);
    for (const Habit& each : kHabits) {
        if (name.starts_with(each.name))
            return each.habit;
    }
    return usesTk(application()) ? PasteHabit::tk : PasteHabit::usual;
}

std::optional<std::string> X11FrontApplication::selectionInsteadOfCopy(
    const std::function<bool(std::int64_t process)>& hasOtherFocus) const {
    const PasteHabit habit = pasteHabit(hasOtherFocus);
    // Whatever that does to a paste, they copy with the usual key.
    if (habit == PasteHabit::usual || habit == PasteHabit::tk)
        return std::nullopt;
    return primarySelection().value_or(std::string());
}

} // namespace quillmoth::platform
