#pragma once

#include "Platform/Accessibility.h"
#include "Platform/Linux/AtSpi/TextElement.h"

#include <string>

/// What the program reads of a text element, and where it puts the caret. Ranges are in UTF-16 units here.
/// A password field has no value, no range, and nothing selected. The accessibility thread.
namespace quillmoth::platform {

struct TextAnswer {
    AXError error = kAXErrorSuccess;
    std::string text;
};

struct RangeAnswer {
    AXError error = kAXErrorSuccess;
    CFRange range;
};

/// Several selections are joined by line breaks. kAXErrorAttributeUnsupported where the selection reaches
/// into embedded objects, so that it has to be gathered.
[[nodiscard]] TextAnswer readSelectedText(const TextElement& element);

/// The selected text of the element and of what is embedded in it.
[[nodiscard]] TextAnswer readGatheredText(const TextElement& element);

/// The whole text.
[[nodiscard]] TextAnswer readValue(const TextElement& element);

/// The first selection in the application's own units, without one the caret's place. None where that is not
/// known for certain, so that nothing gets written to a wrong place.
[[nodiscard]] std::optional<TextRange> readFirstSelection(const TextElement& element,
                                                          const TextElement::Content& content);

/// The first selection; without one, the caret's place with length 0.
[[nodiscard]] RangeAnswer readSelectedRange(const TextElement& element);

/// Selects the range; length 0 places the caret.
[[nodiscard]] AXError writeSelectedRange(const TextElement& element, CFRange range);

/// kAXErrorSuccess for an element with a text that may be read.
[[nodiscard]] AXError checkReadableText(const TextElement& element);

} // namespace quillmoth::platform
