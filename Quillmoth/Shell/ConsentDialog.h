#pragma once

#include <functional>
#include <string>
#include <vector>

namespace quillmoth {

/// Asks the user, in a window of its own, whether accessibility may be switched on for the desktop, and
/// returns at once. `programs` are those running now that have to be restarted afterwards. `agreed` is called
/// later where the answer is yes. Main thread.
void askForAccessibilityConsent(const std::vector<std::string>& programs, std::function<void()> agreed);

} // namespace quillmoth
