#pragma once

#include "Platform/Linux/Desktop/InstanceRequest.h"

#include <optional>
#include <ostream>
#include <span>
#include <string_view>

namespace quillmoth {

/// How a start goes on: it ends with an exit code, or this process becomes the program.
struct StartUp {
    std::optional<int> exitCode;
    /// To be carried out once the program stands.
    std::optional<platform::InstanceRequest> firstRequest = {};
    /// The desktop is to be looked at, and nothing else.
    bool diagnoses = false;
};

/// Reads the arguments behind the program's name, prints what they ask for, and hands over to the instance
/// that runs. To be called before there is an application object.
StartUp beginStart(std::span<const std::string_view> arguments, std::string_view version,
                   std::ostream& output, std::ostream& errors);

/// Hands over to the instance that won the race for the name. Answers with the exit code.
int yieldStart(const std::optional<platform::InstanceRequest>& firstRequest, std::ostream& errors);

} // namespace quillmoth
