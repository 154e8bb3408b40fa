#pragma once

#include "MarkdownUI/Layout/DocumentState.h"

#include <string>

/// A document as plain text, and the links in it. Nothing is laid out for any of it.
namespace quillmoth::markdown {

[[nodiscard]] std::string textOfBlock(const DocumentState& state, std::size_t block);

/// What parts `block` from the one before it: line feeds, or a tab between cells. Empty for the first.
[[nodiscard]] std::string separatorBefore(const DocumentState& state, std::size_t block);

/// The list markers before `block`, each with a blank, after a tab for each list around them.
[[nodiscard]] std::string markersBefore(const DocumentState& state, std::size_t block);

[[nodiscard]] TextRange wholeRange(const DocumentState& state);
[[nodiscard]] std::string plainText(const DocumentState& state, const TextRange& range);

/// Where `range` goes when the images of `after` are loaded. Those that come at its ends are inside.
[[nodiscard]] TextRange movedRange(const DocumentState& state, const TextRange& range,
                                   const IsImageLoaded& after);

/// Fills `documentText` and `documentBlockStarts`.
void ensureDocumentText(DocumentState& state);

[[nodiscard]] std::vector<LinkInfo> linksOfBlock(const DocumentState& state, std::size_t block);

/// The images that stand in the text of a block.
[[nodiscard]] std::vector<PartInfo> imagesOfBlock(const DocumentState& state, std::size_t block);

} // namespace quillmoth::markdown
