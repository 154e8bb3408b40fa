#pragma once

#include "MarkdownUI/Layout/DisplayList.h"
#include "MarkdownUI/Layout/DocumentLayout.h"
#include "MarkdownUI/Layout/TextPosition.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth::markdown {

struct ItemOptions {
    double width = 0;
    double fontSize = FontProperties::defaultSize;
    ColorScheme colorScheme = ColorScheme::dark;
    TextAlignment alignment = TextAlignment::leading;
    double lineHeight = 0; ///< of plain text, from line to line; 0 for that of a paragraph

    bool operator==(const ItemOptions&) const = default;
};

/// What a MarkdownItem shows: a document, or text without markup.
class ItemContent {
public:
    virtual ~ItemContent() = default;

    virtual void setOptions(const ItemOptions& options) = 0;
    virtual double ensureLaidOut(double top, double bottom) = 0;
    [[nodiscard]] virtual double totalHeight() const = 0;

    [[nodiscard]] virtual bool isHeightExact() const = 0;

    [[nodiscard]] virtual double usedWidth() const = 0;
    [[nodiscard]] virtual double firstLineCenter() = 0;
    [[nodiscard]] virtual DisplayList displayList(const Rect& area) = 0;

    [[nodiscard]] virtual std::string textOfBlock(std::size_t block) const = 0;
    [[nodiscard]] virtual TextRange wholeRange() const = 0;
    [[nodiscard]] virtual TextPosition positionAt(Point point) = 0;
    [[nodiscard]] virtual bool isTextAt(Point point) = 0;
    [[nodiscard]] virtual std::vector<Rect> selectionRectangles(const TextRange& range, const Rect& area) = 0;
    [[nodiscard]] virtual Rect caretRectangle(const TextPosition& position) = 0;
    [[nodiscard]] virtual std::string plainText(const TextRange& range) const = 0;
    [[nodiscard]] virtual const std::string& documentText() const = 0;
    [[nodiscard]] virtual std::size_t documentOffset(const TextPosition& position) const = 0;
    [[nodiscard]] virtual TextPosition positionAtDocumentOffset(std::size_t offset) const = 0;

    /// False where the whole text is one block, whose lines stand for paragraphs.
    [[nodiscard]] virtual bool hasBlocks() const { return false; }

    /// The document; null for text without markup.
    [[nodiscard]] virtual DocumentLayout* document() { return nullptr; }
};

} // namespace quillmoth::markdown
