#pragma once

#include <array>

#include "MarkdownUI/BlockStyle.h"
#include "MarkdownUI/ListMarker.h"
#include "MarkdownUI/TableStyle.h"
#include "MarkdownUI/TextStyle.h"

namespace quillmoth::markdown {

/// How a document looks.
struct Theme {
    AnyTextStyle text;
    AnyTextStyle code;
    AnyTextStyle emphasis;
    AnyTextStyle strong;
    AnyTextStyle strikethrough;
    AnyTextStyle link;

    std::array<BlockStyle, 6> headings;
    BlockStyle paragraph;
    BlockStyle blockquote;
    BlockStyle codeBlock;
    BlockStyle image;
    BlockStyle list;
    BlockStyle listItem;
    TaskListMarkerStyle taskListMarker;
    ListMarkerStyle bulletedListMarker;
    ListMarkerStyle numberedListMarker;
    BlockStyle table;
    TableCellStyle tableCell;
    BlockStyle thematicBreak;

    TableBorderStyle tableBorderStyle;
    TableBackgroundStyle tableBackgroundStyle = TableBackgroundStyle::clear();

    /// The theme in use.
    [[nodiscard]] static const Theme& basic();
};

} // namespace quillmoth::markdown
