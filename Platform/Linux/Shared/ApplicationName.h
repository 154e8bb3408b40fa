#pragma once

#include <string>
#include <string_view>

namespace quillmoth::platform {

/// What users call an application, as far as its own name for itself tells: "org.kde.kate" is Kate. That name
/// is a Wayland app_id or the class of an X11 window.
[[nodiscard]] inline std::string applicationName(std::string_view identifier) {
    // Some put their domain before it.
    std::string name(identifier.substr(identifier.rfind('.') + 1));
    if (!name.empty() && name.front() >= 'a' && name.front() <= 'z')
        name.front() = static_cast<char>(name.front() - 'a' + 'A');
    return name;
}

} // namespace quillmoth::platform
