#pragma once

#include "Platform/Accessibility.h"
#include "Platform/Linux/AtSpi/TextElement.h"

#include <optional>
#include <string>

namespace quillmoth::platform {

/// Gives an editable element the text `newText` by changing the one stretch in which that differs from what
/// it holds, and reads it back. The new text goes in before the old one goes out, and a change that turns out
/// other than asked for is taken back, so nothing is ever lost. Line breaks become spaces in a single-line
/// field. kAXErrorAttributeUnsupported, with nothing changed, where the element says that it cannot be edited
/// or takes no text this way; otherwise the errors of Accessibility::setAttributeValue. The accessibility
/// thread.
[[nodiscard]] AXError writeValue(const TextElement& element, const std::string& newText);

struct PasteAnswer {
    AXError error = kAXErrorSuccess;
    /// What is to be pasted: the text as the element can hold it.
    std::string replacement = {};
    /// What the element holds before that; none where it does not tell, so that reading it back says nothing.
    std::optional<std::string> before = {};
};

/// Whether `text` may be pasted over what is selected in the element: it has to have the focus, for that is
/// where a paste goes. Refuses terminals, password fields, and what says that it cannot be edited. The
/// accessibility thread.
[[nodiscard]] PasteAnswer preparePaste(const TextElement& element, const std::string& text);

/// The same for the text that makes the whole of the element's `newText`. kAXErrorAttributeUnsupported where
/// that changes something else than what is selected.
[[nodiscard]] PasteAnswer prepareReplacement(const TextElement& element, const std::string& newText);

/// Whether the element changes its text on request. What some toolkits say of that is not so.
[[nodiscard]] bool takesEdits(const TextElement& element);

/// Waits a little while until the element's text is another one than `before`; kAXErrorFailure where it
/// stays.
[[nodiscard]] AXError awaitOtherText(const TextElement& element, const std::string& before);

} // namespace quillmoth::platform
