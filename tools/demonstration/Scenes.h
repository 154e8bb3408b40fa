#pragma once

#include "Demonstration.h"

#include <string>

namespace quillmoth::test {

/// What the chat server says to what.
[[nodiscard]] std::string demonstrationScript();

/// What stands in the editor at first.
[[nodiscard]] std::string demonstrationText();

// The parts of the demonstration, in order. Each leaves the panel closed, and reports its checks; a part that
// could not go on gives false.
bool showSelectionToAnswer(Demonstration& demonstration);
bool showForm(Demonstration& demonstration);
bool showTypedCommand(Demonstration& demonstration);
bool showHistory(Demonstration& demonstration);
bool showBesideSettings(Demonstration& demonstration);
bool showWhatIsNotWritten(Demonstration& demonstration);

// Steps of several parts.
bool openPanel(Demonstration& demonstration, const std::string& what);
/// The answer is complete when the bar offers a new chat in place of the cancelling.
bool awaitAnswer(Demonstration& demonstration, const std::string& what);

} // namespace quillmoth::test
