#pragma once

#include "Foundation/Result.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth {

/// What the program was started for.
struct CommandLine {
    enum class Action { start, toggle, settings, quit, diagnose, showVersion, showHelp };

    Action action = Action::start;
    /// The program's own URLs, in order; with the action `start` only.
    std::vector<std::string> urls = {};

    friend bool operator==(const CommandLine&, const CommandLine&) = default;
};

/// Reads the arguments behind the program's name. An error is one line for the user.
Result<CommandLine> parseCommandLine(std::span<const std::string_view> arguments);

/// What "--help" prints.
std::string_view commandLineHelp();

} // namespace quillmoth
