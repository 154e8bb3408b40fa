#pragma once

#include "MarkdownUI/Style/BlockStyle.h"
#include "MarkdownUI/Style/ListMarker.h"
#include "MarkdownUI/Style/TableStyle.h"
#include "MarkdownUI/Style/TextStyle.h"

#include <array>

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
    BlockStyle image = unchanged;
    BlockStyle list = unchanged;
    BlockStyle listItem = unchanged;
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
