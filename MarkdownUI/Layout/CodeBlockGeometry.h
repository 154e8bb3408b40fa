#pragma once

#include "MarkdownUI/Layout/DisplayList.h"

namespace quillmoth::markdown {

class DocumentState;

constexpr const char* kCopyLabel = "Copy code";
constexpr const char* kCopiedLabel = "Copied";

[[nodiscard]] Font copyButtonFont();

/// What the button says now.
[[nodiscard]] std::string copyButtonLabel(const DocumentState& state, std::size_t codeBlock);

/// The blocks are counted in document order.
[[nodiscard]] ButtonItem copyButton(DocumentState& state, std::size_t codeBlock);

} // namespace quillmoth::markdown
