#pragma once

#include "MarkdownUI/Layout/DisplayList.h"

namespace quillmoth::markdown {

class DocumentState;

/// What of the document meets `area`, which is laid out.
[[nodiscard]] DisplayList makeDisplayList(DocumentState& state, const Rect& area);

} // namespace quillmoth::markdown
