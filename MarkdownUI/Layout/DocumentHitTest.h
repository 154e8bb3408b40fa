#pragma once

#include "MarkdownUI/Layout/DisplayList.h"
#include "MarkdownUI/Layout/TextPosition.h"
#include "MarkdownUI/Style/Geometry.h"

#include <optional>
#include <string>
#include <vector>

/// From places to text and back. What is asked for is laid out first. See DocumentLayout.
namespace quillmoth::markdown {

class DocumentState;

[[nodiscard]] TextPosition positionAt(DocumentState& state, Point point);
[[nodiscard]] bool isTextAt(DocumentState& state, Point point);
[[nodiscard]] std::vector<Rect> selectionRectangles(DocumentState& state, const TextRange& range,
                                                    const Rect& area);
[[nodiscard]] Rect caretRectangle(DocumentState& state, const TextPosition& position);
[[nodiscard]] std::optional<std::string> linkAt(DocumentState& state, Point point);

/// The URL of the image or placeholder at `point`; empty for none.
[[nodiscard]] std::string imageAt(DocumentState& state, Point point);
[[nodiscard]] std::optional<std::size_t> codeBlockAt(DocumentState& state, Point point);
[[nodiscard]] std::optional<ScrollRegionItem> scrollRegionAt(DocumentState& state, Point point);

} // namespace quillmoth::markdown
