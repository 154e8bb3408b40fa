#pragma once

#include "MarkdownUI/Document/Inline.h"
#include "MarkdownUI/Layout/TextEngine.h"

#include <optional>
#include <string_view>

namespace quillmoth::markdown {

/// The direction of the first character that has a strong one (UAX #9, rules P2 and P3, isolates left aside);
/// nothing where none has.
[[nodiscard]] std::optional<TextDirection> firstStrongDirection(std::string_view text);
[[nodiscard]] std::optional<TextDirection> firstStrongDirection(const Inlines& values);

} // namespace quillmoth::markdown
