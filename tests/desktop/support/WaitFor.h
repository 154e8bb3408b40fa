#pragma once

#include <chrono>
#include <functional>

namespace quillmoth::test {

/// Waits until `condition` holds, asking again and again; false where the deadline comes first. Where the
/// process has a Qt application its events are handled meanwhile.
[[nodiscard]] bool holdsWithin(std::chrono::milliseconds deadline, const std::function<bool()>& condition);

/// The same, for waits whose outcome is looked at elsewhere.
bool waitFor(const std::function<bool()>& condition,
             std::chrono::milliseconds deadline = std::chrono::seconds(5));

/// Handles Qt's events for the whole time: for showing that something does not happen.
void letPass(std::chrono::milliseconds time);

} // namespace quillmoth::test
