#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth::platform {

/// What one start of the program, or the launcher, asks of the instance that runs. It travels as a call of
/// the interface org.freedesktop.Application (Desktop Entry Specification 1.5, "D-Bus Activation").
struct InstanceRequest {
    enum class Kind { activate, open, toggle, settings, getStarted, promptEditor, quit };

    Kind kind = Kind::activate;
    /// With `open` only.
    std::vector<std::string> urls = {};

    friend bool operator==(const InstanceRequest&, const InstanceRequest&) = default;
};

/// The name under which ActivateAction knows the request; null for `activate` and `open`, which have methods
/// of their own.
const char* actionName(InstanceRequest::Kind kind);

std::optional<InstanceRequest::Kind> actionNamed(std::string_view name);

constexpr char kInstanceService[] = "org.quillmoth.Quillmoth";
constexpr char kInstancePath[] = "/org/quillmoth/Quillmoth";
constexpr char kInstanceInterface[] = "org.freedesktop.Application";

} // namespace quillmoth::platform
