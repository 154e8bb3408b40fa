#pragma once

#include <functional>

namespace quillmoth {

/// Asks the user, in a window of its own, whether accessibility may be switched on for the desktop, and
/// returns at once. `agreed` is called later where the answer is yes. Main thread.
void askForAccessibilityConsent(std::function<void()> agreed);

} // namespace quillmoth
