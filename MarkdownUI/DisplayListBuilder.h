#pragma once

#include "MarkdownUI/DisplayList.h"

namespace quillmoth::markdown {

class DocumentState;

/// What of the document meets `area`, which is laid out.
[[nodiscard]] DisplayList makeDisplayList(DocumentState& state, const Rect& area);

/// How far the text of a unit is moved to the left by its code block's scroll offset.
[[nodiscard]] double scrollOffsetOfUnit(const DocumentState& state, std::size_t unit);

} // namespace quillmoth::markdown
