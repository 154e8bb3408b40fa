#pragma once

#include "MarkdownUI/Document/Block.h"
#include "MarkdownUI/Document/CommonMarkNode.h"

namespace quillmoth::markdown {

/// The children of a document node as blocks. Nodes of unknown type are left out with all below them.
[[nodiscard]] Blocks blocksOfDocument(const CommonMarkNode& document);

} // namespace quillmoth::markdown
