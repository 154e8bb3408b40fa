#pragma once

#include "Platform/Accessibility.h"
#include "Platform/Linux/AtSpi/TextElement.h"

#include <string>

namespace quillmoth::platform {

struct WriteAnswer {
    AXError error = kAXErrorSuccess;
    /// The element takes no text this way, and what is to be replaced has been selected: pasting
    /// `replacement` would do it.
    bool isReadyForPaste = false;
    std::string replacement = {};
    /// What the element held then.
    std::string before = {};
};

/// Gives an editable element the text `newText` by changing the one stretch in which that differs from what
/// it holds, and reads it back. The new text goes in before the old one goes out, and a change that turns out
/// other than asked for is taken back, so nothing is ever lost. Line breaks become spaces in a single-line
/// field. Refuses password fields and whatever is not editable. With `preparesPaste` an element that cannot
/// be edited so is made ready for a paste, never after a time-out. The accessibility thread.
[[nodiscard]] WriteAnswer writeValue(const TextElement& element, const std::string& newText,
                                     bool preparesPaste);

/// Waits a little while until the element's text is another one than `before`; kAXErrorFailure where it
/// stays.
[[nodiscard]] AXError awaitOtherText(const TextElement& element, const std::string& before);

} // namespace quillmoth::platform
