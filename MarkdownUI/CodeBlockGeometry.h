#pragma once

#include "MarkdownUI/DisplayList.h"

namespace quillmoth::markdown {

class DocumentState;

constexpr const char* kCopyLabel = "Copy code";
constexpr const char* kCopiedLabel = "Copied";

[[nodiscard]] Font copyButtonFont();

/// The frame of a code block, from its side bar to its right edge. The blocks are counted in document order.
[[nodiscard]] Rect codeBlockFrame(const DocumentState& state, std::size_t codeBlock);

/// The scroll region with its offset moved into the range that there is.
[[nodiscard]] ScrollRegionItem codeScrollRegion(const DocumentState& state, std::size_t codeBlock);

[[nodiscard]] ButtonItem copyButton(DocumentState& state, std::size_t codeBlock);

} // namespace quillmoth::markdown
