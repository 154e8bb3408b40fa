#pragma once

#include "tests/desktop/demonstration/DemonstrationDesktop.h"

#include <string>

namespace quillmoth::test {

/// What the chat server says to what.
[[nodiscard]] std::string demonstrationScript();

/// What stands in the editor at first.
[[nodiscard]] std::string demonstrationText();

// The parts of the demonstration, in order. Each leaves the panel closed, and reports its checks; a part that
// could not go on gives false.
bool showSelectionToAnswer(DemonstrationDesktop& desktop);
bool showForm(DemonstrationDesktop& desktop);
bool showTypedCommand(DemonstrationDesktop& desktop);
bool showHistory(DemonstrationDesktop& desktop);
bool showBesideSettings(DemonstrationDesktop& desktop);

} // namespace quillmoth::test
