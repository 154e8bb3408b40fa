#include "Platform/Linux/Shared/PasteHabits.h"

#include "Foundation/ASCII.h"

#include <fstream>
#include <string>

namespace quillmoth::platform {

namespace {

struct Habit {
    /// What the name begins with, in small letters.
    std::string_view name;
    PasteHabit habit;
};

/// Those that paste otherwise than most. Each row is tried with the program itself by the matrix of desktop
/// tests.
constexpr Habit kHabits[] = {
    {"emacs", PasteHabit::emacs},
    {"gvim", PasteHabit::vim},
};

} // namespace

PasteHabit pasteHabitByName(std::string_view name) {
    const std::string lowered = lowercasedASCII(std::string(name));
    for (const Habit& each : kHabits) {
        if (lowered.starts_with(each.name))
            return each.habit;
    }
    return PasteHabit::usual;
}

bool usesTk(std::int64_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/maps");
    for (std::string line; std::getline(file, line);) {
        if (line.find("/libtk8") != std::string::npos || line.find("/libtk9") != std::string::npos)
            return true;
    }
    return false;
}

} // namespace quillmoth::platform
