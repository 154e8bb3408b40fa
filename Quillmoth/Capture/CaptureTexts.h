#pragma once

namespace quillmoth {

/// Values of `_status`.
constexpr const char* kContextFound = "Context found press esc to remove context";
constexpr const char* kNoSelection = "No selection";
constexpr const char* kNoFocusFound = "No focus found";
constexpr const char* kContextRemoved = "Context removed";

} // namespace quillmoth
