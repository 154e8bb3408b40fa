#pragma once

#include "MarkdownUI/Layout/DisplayList.h"
#include "MarkdownUI/Layout/TextPosition.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth::markdown {

struct PlainTextOptions {
    double width = 0;
    Font font;
    double lineSpacing = 0; ///< between two lines
    TextAlignment alignment = TextAlignment::leading;

    bool operator==(const PlainTextOptions&) const = default;
};

/// Text without markup that grows at its end, as an answer does while it streams. An append shapes the last
/// line again and nothing before it, however long the text or its last paragraph is. Main thread.
class PlainTextLayout {
public:
    explicit PlainTextLayout(TextEngine& engine); ///< outlives the layout
    ~PlainTextLayout();
    PlainTextLayout(const PlainTextLayout&) = delete;
    PlainTextLayout& operator=(const PlainTextLayout&) = delete;

    void setOptions(const PlainTextOptions& options);
    void setText(std::string text);
    /// Also in the middle of a character: its bytes show when it is complete.
    void append(std::string_view piece);

    [[nodiscard]] const std::string& text() const;

    /// A long text that came at once is laid out only where it is seen; heights elsewhere are estimated. As
    /// DocumentLayout::ensureLaidOut: lays out what is between two heights and returns how far the content at
    /// `top` has moved down.
    double ensureLaidOut(double top, double bottom);
    [[nodiscard]] double totalHeight() const;
    /// False while a part of it is estimated.
    [[nodiscard]] bool isHeightExact() const;
    /// Of the widest line that has been laid out.
    [[nodiscard]] double usedWidth() const;
    [[nodiscard]] double firstLineCenter() const;

    /// The lines that meet `area`; text block 0.
    [[nodiscard]] DisplayList displayList(const Rect& area);
    /// Block 0.
    [[nodiscard]] TextPosition positionAt(Point point);
    [[nodiscard]] std::vector<Rect> selectionRectangles(const TextRange& range, const Rect& area);
    [[nodiscard]] Rect caretRectangle(const TextPosition& position);

private:
    class State;
    std::unique_ptr<State> state_;
};

} // namespace quillmoth::markdown
