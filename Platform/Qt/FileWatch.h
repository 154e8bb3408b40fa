#pragma once

#include "Foundation/Subscription.h"

#include <functional>
#include <string>
#include <vector>

namespace quillmoth::platform {

/// Calls `changed` when one of the files and folders that `paths` names may have changed; what is not there
/// is left out. `paths` is asked now and after each change, for a file that was replaced is watched no more.
/// Main thread, while an event loop runs.
Subscription watchFiles(std::function<std::vector<std::string>()> paths, std::function<void()> changed);

} // namespace quillmoth::platform
