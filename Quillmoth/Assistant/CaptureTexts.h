#pragma once

namespace quillmoth {

/// Values of `_status`.
constexpr const char* kContextFound = "Context found press esc to remove context";
constexpr const char* kNoSelection = "No selection";
constexpr const char* kNoFocusFound = "No focus found";
constexpr const char* kContextRemoved = "Context removed";

/// Value of `_error` where accessibility is not enabled.
constexpr const char* kPermissionMessage = "You have not enabled accessibility access. Quillmoth requires "
                                           "accessibility access to capture what is on the "
                                           "screen. On your Mac, choose Apple menu > System Preferences > "
                                           "Security & Privacy > Privacy > Accessibility, "
                                           "then grant access to Quillmoth.";

} // namespace quillmoth
