#pragma once

#include "Foundation/Limits.h"

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

/// Value of `_error` where a copy is asked for, and no key can be sent for it.
constexpr const char* kNoCopyMessage =
    "The selection cannot be copied: this desktop takes no keys from programs (on X11 the XTEST extension is "
    "missing). Switch off \"Use an alternative method to obtain the text\" in the settings.";

/// Value of `_error` where the selected text is longer than limits::kSelection.
constexpr const char* kCutMessage =
    "The selected text is longer than 1 MB. Its first 1 MB is the context; the rest "
    "is left out.";
static_assert(limits::kSelection == limits::kMegabyte);

} // namespace quillmoth
