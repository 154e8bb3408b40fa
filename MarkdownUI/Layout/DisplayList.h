#pragma once

#include "MarkdownUI/Layout/TextEngine.h"
#include "MarkdownUI/Style/AttributedText.h"
#include "MarkdownUI/Style/Color.h"
#include "MarkdownUI/Style/Geometry.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

/// What a painter draws, in order, in the coordinates of the document. Pointers are owned by the layout that
/// made the list and hold until its next change.
namespace quillmoth::markdown {

/// The text block of text that cannot be selected (list markers, buttons).
constexpr std::size_t kNoTextBlock = static_cast<std::size_t>(-1);

struct TextLineItem {
    Rect frame;   ///< the line's advance and height
    Point origin; ///< of the shaped text, whose line `line` stands at `frame`
    const ShapedText* shaped = nullptr;
    const AttributedText* text = nullptr; ///< what was shaped
    std::size_t line = 0;
    std::size_t textBlock = kNoTextBlock;
    std::size_t textOffset = 0; ///< where `text` starts in its text block
};

struct RectangleItem {
    Rect frame;
    Color color = SemanticColor::text;
    double trailingRadius = 0; ///< of the two right corners
    bool isOverlay = false;    ///< over the text before it; all others are below all text
};

/// A named symbol of the system, tinted.
struct SymbolItem {
    Rect frame;
    std::string name;
    Color color = SemanticColor::text;
};

/// An image scaled to its frame, its placeholder, or a clear area where it is not there (yet).
struct ImageItem {
    Rect frame;
    std::string source; ///< absolute URL
    std::string alt;
    std::string destination; ///< absolute URL to open on a click; empty for none
    bool isPlaceholder = false;
};

/// The copy button of a code block: symbol, then label, in `frame` with its rounded fill.
struct ButtonItem {
    Rect frame;
    Rect symbolFrame;
    std::string symbol;
    std::string label;
    Point labelOrigin; ///< top left of the label's line
    Font font;
    bool isDone = false; ///< just copied
    std::size_t codeBlock = 0;
};

/// The `itemCount` items that follow are clipped to `frame`; their x is shifted by -`offset` already.
struct ScrollRegionItem {
    Rect frame;
    double contentWidth = 0;
    double offset = 0;     ///< from 0 to contentWidth - frame.width
    std::size_t group = 0; ///< its name in the document
    bool isCode = false;   ///< else a table
    std::size_t itemCount = 0;
};

using DisplayItem =
    std::variant<TextLineItem, RectangleItem, SymbolItem, ImageItem, ButtonItem, ScrollRegionItem>;
using DisplayList = std::vector<DisplayItem>;

[[nodiscard]] const Rect& frameOf(const DisplayItem& item);

/// One line an item, items of a scroll region indented: the readable form for comparisons.
[[nodiscard]] std::string describe(const DisplayList& list);

} // namespace quillmoth::markdown
