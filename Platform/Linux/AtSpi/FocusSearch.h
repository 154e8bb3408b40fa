#pragma once

#include "Platform/Linux/AtSpi/Applications.h"
#include "Platform/Linux/AtSpi/FocusTracker.h"

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>

namespace quillmoth::platform {

/// What walks through the windows of applications have come to, by their connections.
struct WalkMemory {
    /// Where nothing was found that has the focus. They are not walked through again before they tell of one.
    std::set<std::string> fruitless = {};
    /// What was found last. It is looked at before another walk.
    std::map<std::string, ObjectReference> found = {};
};

/// The object of `process` that has the keyboard: the one its events told last, while that still says so;
/// else what a short walk through its windows meets, the active one first. Null where there is none. No
/// question goes to a whole window at once, since some would look at each of a million cells for the answer.
[[nodiscard]] ObjectReference findFocus(Operation& operation, Applications& applications,
                                        const FocusTracker& tracker, std::int64_t process,
                                        WalkMemory& memory);

/// The process of the first application that has an active window, other than those that are `passedOver`.
[[nodiscard]] std::optional<std::int64_t>
findActiveProcess(Operation& operation, Applications& applications,
                  const std::function<bool(const ObjectReference& root)>& passedOver);

/// The windows of the application at `root`, those that are active first.
[[nodiscard]] std::vector<ObjectReference> windowsOf(Operation& operation, const ObjectReference& root);

} // namespace quillmoth::platform
