#include "Platform/Linux/Desktop/InstanceRequest.h"

#include <algorithm>
#include <array>

namespace quillmoth::platform {

namespace {

struct NamedAction {
    const char* name;
    InstanceRequest::Kind kind;
};

constexpr std::array kActions{
    NamedAction{"toggle", InstanceRequest::Kind::toggle},
    NamedAction{"settings", InstanceRequest::Kind::settings},
    NamedAction{"get-started", InstanceRequest::Kind::getStarted},
    NamedAction{"prompt-editor", InstanceRequest::Kind::promptEditor},
    NamedAction{"quit", InstanceRequest::Kind::quit},
};

} // namespace

const char* actionName(InstanceRequest::Kind kind) {
    const auto* found = std::find_if(kActions.begin(), kActions.end(),
                                     [&](const NamedAction& action) { return action.kind == kind; });
    return found == kActions.end() ? nullptr : found->name;
}

std::optional<InstanceRequest::Kind> actionNamed(std::string_view name) {
    const auto* found = std::find_if(kActions.begin(), kActions.end(),
                                     [&](const NamedAction& action) { return action.name == name; });
    return found == kActions.end() ? std::nullopt : std::optional(found->kind);
}

} // namespace quillmoth::platform
