#pragma once

#include <functional>
#include <string>
#include <vector>

class QDialog;

namespace quillmoth {

/// Asks the user, in a window of its own, whether accessibility may be switched on for the desktop, and
/// returns at once. `programs` are those running now that have to be restarted afterwards. `agreed` is called
/// later where the answer is yes. The window deletes itself when it is closed. Main thread.
QDialog* askForAccessibilityConsent(const std::vector<std::string>& programs, bool dark,
                                    std::function<void()> agreed);

} // namespace quillmoth
