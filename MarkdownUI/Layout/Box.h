#pragma once

#include "MarkdownUI/Layout/DisplayList.h"
#include "MarkdownUI/Layout/DocumentFlow.h"
#include "MarkdownUI/Layout/ImageSource.h"
#include "MarkdownUI/Layout/LayoutOptions.h"
#include "MarkdownUI/Style/CodeSyntaxHighlighter.h"
#include "MarkdownUI/Style/InlineRendering.h"

#include <memory>
#include <optional>
#include <vector>

/// Units of a document laid out. All coordinates of a box are x of the document and y from the top of the
/// unit, below its gap.
namespace quillmoth::markdown {

/// A shaped text and where it stands.
struct Fragment {
    std::unique_ptr<const AttributedText> text;
    std::unique_ptr<ShapedText> shaped;
    Point origin;
    std::size_t lineCount = 0; ///< of the shaped lines, those that count
    std::size_t textBlock = kNoTextBlock;
    std::size_t textOffset = 0; ///< of `text` in the text block

    [[nodiscard]] Rect frameOfLine(std::size_t line) const;
    /// Behind the last counted line's text.
    [[nodiscard]] std::size_t textEnd() const;
};

struct Box {
    std::vector<Fragment> fragments;
    DisplayList decorations;
    double height = 0;
    double right = 0; ///< of the widest thing in it
};

/// A column of space.
struct ColumnFrame {
    double x = 0;
    double width = 0;
};

/// The columns of a table: their cells with padding, without borders.
struct TableColumns {
    std::vector<ColumnFrame> columns;
    Rect bounds; ///< x and width only, borders included
};

/// What the units of a group share while some of them are laid out.
struct GroupState {
    std::optional<AttributedText> text; ///< the whole of a code block or long text, with fonts
    std::optional<TableColumns> columns;
    double codeWidth = 0; ///< of the widest line seen
    std::size_t unitsSeen = 0;
};

/// All that laying out needs to know. References hold as long as the document's layout.
struct LayoutContext {
    TextEngine& engine;
    ImageSource& images;
    const Theme& theme;
    const LayoutOptions& options;
    const DocumentFlow& flow;
    const InlineEnvironment& environment;
    const CodeSyntaxHighlighter* highlighter = nullptr;

    /// The absolute URL of an image's source; empty where it has none.
    [[nodiscard]] std::string imageURL(const std::string& source) const;
    /// The image with that URL, requested where it is not known; none for an empty one.
    [[nodiscard]] DefaultImageViewModel image(const std::string& url) const;

    [[nodiscard]] const AttributeContainer& bagOf(const FlowUnit& unit) const { return flow.bags[unit.bag]; }
};

/// Where the content of a unit stands. Deep nesting leaves it a least width.
[[nodiscard]] ColumnFrame contentFrame(const LayoutContext& context, const FlowUnit& unit);

/// A cheap guess of the height that makeBox will give.
[[nodiscard]] double estimatedHeight(const LayoutContext& context, const FlowUnit& unit);

/// Lays out a unit with its markers. `group` is that of the unit (any, where it has none).
[[nodiscard]] Box makeBox(const LayoutContext& context, const FlowUnit& unit, GroupState& group);

/// Before the unit's first line. The box holds its content by now.
void addMarkers(const LayoutContext& context, const FlowUnit& unit, Box& box);

/// Adds a shaped text to `box` and gives its size.
Size addFragment(const LayoutContext& context, AttributedText text, const TextOptions& options, Point origin,
                 std::size_t textBlock, Box& box);

/// In the font around a unit's content.
[[nodiscard]] double lineHeightOf(const LayoutContext& context, const FlowUnit& unit);

} // namespace quillmoth::markdown
