#pragma once

#include "Platform/Linux/AtSpi/TextElement.h"

#include <vector>

/// Word processors show each paragraph as an element of its own; relations tell which one follows which. The
/// accessibility thread.
namespace quillmoth::platform {

/// The paragraphs over which the selection at `element` extends, in order; fewer than two where it stays
/// within the element, or where the element is no such paragraph.
[[nodiscard]] std::vector<ObjectReference> selectedParagraphs(const TextElement& element);

} // namespace quillmoth::platform
