#pragma once

#include "Platform/Linux/AtSpi/TextElement.h"

#include <string>

namespace quillmoth::platform {

/// The selected text within `element` and in what is embedded in it, in reading order; paragraphs and the
/// like stand on lines of their own. Enters embedded objects only (Hypertext), and only so many of them as a
/// fraction of a second allows. Empty where nothing is selected. The accessibility thread.
[[nodiscard]] std::string gatherSelectedText(const TextElement& element);

} // namespace quillmoth::platform
