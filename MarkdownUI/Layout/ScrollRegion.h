#pragma once

#include "MarkdownUI/Layout/Box.h"
#include "MarkdownUI/Layout/DisplayList.h"

/// What is wider than its column and scrolls sideways: code blocks, and tables whose words would have to be
/// broken otherwise. Each is named by the index of its group in the document's flow.
namespace quillmoth::markdown {

class DocumentState;

/// Below a table that scrolls there is room for its bar.
constexpr double kTableBarRoom = 10;

/// True for a table whose columns, once made, are wider than `frame`.
[[nodiscard]] bool scrollsSideways(const TableColumns& columns, const ColumnFrame& frame);

/// The region with its offset moved into the range that there is. The group is a code block or a table; a
/// table that fits has no range.
[[nodiscard]] ScrollRegionItem scrollRegionOf(const DocumentState& state, std::size_t group);

/// How far the content of a unit is moved to the left.
[[nodiscard]] double scrollOffsetOfUnit(const DocumentState& state, std::size_t unit);

/// Keeps what leads to `offset`, which need not be in the range.
void setScrollOffset(DocumentState& state, std::size_t group, double offset);

} // namespace quillmoth::markdown
