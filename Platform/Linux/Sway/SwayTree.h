#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

/// What the compositor's answers say. All of them may be of any form; what is not as expected counts as
/// missing.
namespace quillmoth::platform {

[[nodiscard]] std::string textIn(const nlohmann::json& object, const char* name);
[[nodiscard]] bool isSetIn(const nlohmann::json& object, const char* name);

/// A window of an application.
struct SwayWindow {
    /// The compositor's number for it, its own as long as the compositor runs.
    std::int64_t identifier = 0;
    std::int64_t process = 0;
    /// The application's own name for itself: its Wayland app_id, or the class of its X11 window.
    std::string application;

    friend bool operator==(const SwayWindow&, const SwayWindow&) = default;
};

/// None for a container that is no window.
[[nodiscard]] std::optional<SwayWindow> windowIn(const nlohmann::json& container);

/// The window with the focus of the seat, in the answer to get_tree; none on an empty workspace.
[[nodiscard]] std::optional<SwayWindow> focusedWindow(const nlohmann::json& tree);

/// The name of the output with the focus, in the answer to get_outputs; empty for none.
[[nodiscard]] std::string focusedOutput(const nlohmann::json& outputs);

} // namespace quillmoth::platform
