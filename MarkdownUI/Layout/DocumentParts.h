#pragma once

#include "MarkdownUI/Layout/DocumentState.h"

#include <vector>

/// What of a document is more than text: headings, links, images, copy buttons.
namespace quillmoth::markdown {

/// All of them, in reading order. Nothing is laid out for it.
[[nodiscard]] std::vector<PartInfo> partsOf(const DocumentState& state);

/// Where a part stands, a rectangle a line; lays it out if needed. Empty for a link without text.
[[nodiscard]] std::vector<Rect> rectanglesOf(DocumentState& state, const PartInfo& part);

/// The images within `range` that stand for themselves, in `area`.
[[nodiscard]] std::vector<Rect> selectedImages(DocumentState& state, const TextRange& range,
                                               const Rect& area);

} // namespace quillmoth::markdown
