#pragma once

#include "MarkdownUI/Document/MarkdownContent.h"
#include "MarkdownUI/Layout/DisplayList.h"
#include "MarkdownUI/Layout/ImageSource.h"
#include "MarkdownUI/Layout/LayoutOptions.h"
#include "MarkdownUI/Layout/TextPosition.h"
#include "MarkdownUI/Style/CodeSyntaxHighlighter.h"
#include "MarkdownUI/Style/Theme.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth::markdown {

class DocumentState;

/// A Markdown document laid out for a viewport. Main thread.
///
/// Only what a viewport needs is laid out, in units of a paragraph, a table row, some lines of code; the rest
/// has an estimated height, which becomes exact the first time that it is seen. What is far from the last
/// viewport is forgotten but for its height. All coordinates are the document's, y 0 at its top.
class DocumentLayout {
public:
    /// All of these outlive the layout.
    DocumentLayout(TextEngine& engine, ImageSource& images, const Theme& theme);
    ~DocumentLayout();
    DocumentLayout(const DocumentLayout&) = delete;
    DocumentLayout& operator=(const DocumentLayout&) = delete;

    void setContent(MarkdownContent content);
    void setOptions(LayoutOptions options);
    /// Null for no colours. Owned by the caller; call again when its colours have changed.
    void setCodeSyntaxHighlighter(const CodeSyntaxHighlighter* highlighter);
    /// Images have arrived, or are to be asked for again: what holds images is laid out again. An image in a
    /// text moves what is behind it: the ranges in `kept` are moved along, and hold the images that have come
    /// at their ends.
    void imagesChanged(std::span<TextRange> kept = {});
    /// True where an image was asked for that is not there.
    [[nodiscard]] bool isMissingImages() const;

    [[nodiscard]] const LayoutOptions& options() const;
    [[nodiscard]] const MarkdownContent& content() const;

    /// Lays out what is between two heights. Returns how far the content at `top` has moved down because
    /// something above it turned out higher than estimated: add it to the scroll position.
    double ensureLaidOut(double top, double bottom);

    /// From the document's top.
    void ensureLaidOut(double untilY) { (void)ensureLaidOut(0, untilY); }

    /// Estimated in part until `isHeightExact`.
    [[nodiscard]] double totalHeight() const;
    [[nodiscard]] bool isHeightExact() const;
    /// The width that the widest laid out line, table or image takes; at most `options().width` but for what
    /// cannot be narrower. For bubbles that hug their text.
    [[nodiscard]] double usedWidth() const;
    /// The middle of the first line, or of the first image, from the document's top.
    [[nodiscard]] double firstLineCenter();

    /// What stands in `area`, which it lays out first if needed.
    [[nodiscard]] DisplayList displayList(const Rect& area);

    // Text. Blocks in hit tests and rectangles are laid out first if needed.
    [[nodiscard]] std::size_t textBlockCount() const;
    [[nodiscard]] std::string textOfBlock(std::size_t block) const;
    [[nodiscard]] TextRange wholeRange() const;
    /// The position nearest to `point`.
    [[nodiscard]] TextPosition positionAt(Point point);
    /// True where `point` is on text, so that a press would start a selection there.
    [[nodiscard]] bool isTextAt(Point point);
    /// Those that meet `area`.
    [[nodiscard]] std::vector<Rect> selectionRectangles(const TextRange& range, const Rect& area);
    /// Zero wide.
    [[nodiscard]] Rect caretRectangle(const TextPosition& position);
    /// As it is copied: blocks apart by line feeds, cells by tabs, with list markers where an item's start is
    /// inside.
    [[nodiscard]] std::string plainText(const TextRange& range) const;
    /// plainText of everything, and positions as byte offsets in it (for accessibility).
    [[nodiscard]] const std::string& documentText() const;
    [[nodiscard]] std::size_t documentOffset(const TextPosition& position) const;
    /// Within a marker or separator: the start of the block that follows.
    [[nodiscard]] TextPosition positionAtDocumentOffset(std::size_t offset) const;

    // Links and other parts.
    /// The destination of the link or linked image at `point`. A placeholder is none.
    [[nodiscard]] std::optional<std::string> linkAt(Point point);
    /// The URL of the image or placeholder at `point`; empty for none.
    [[nodiscard]] std::string imageAt(Point point);
    /// Headings, links, images and copy buttons in reading order.
    [[nodiscard]] std::vector<PartInfo> parts() const;
    /// Where a part stands, a rectangle a line.
    [[nodiscard]] std::vector<Rect> rectanglesOf(const PartInfo& part);
    /// The frames of the images that stand for themselves within `range`; those that meet `area`.
    [[nodiscard]] std::vector<Rect> selectedImages(const TextRange& range, const Rect& area);

    // Code blocks, counted in document order.
    [[nodiscard]] std::size_t codeBlockCount() const;
    [[nodiscard]] std::optional<std::size_t> copyButtonAt(Point point);
    /// The frame of the copy button; the block need not be laid out.
    [[nodiscard]] Rect copyButtonFrame(std::size_t codeBlock);
    /// What its copy button copies.
    [[nodiscard]] std::string codeBlockText(std::size_t codeBlock) const;
    void setJustCopy(std::size_t codeBlock, bool justCopy);
    /// What its copy button says now.
    [[nodiscard]] std::string copyButtonLabel(std::size_t codeBlock) const;
    /// What its scroll region is called.
    [[nodiscard]] std::size_t groupOfCodeBlock(std::size_t codeBlock) const;

    // What scrolls sideways: code blocks, and tables, which have no range where they fit.
    /// The region at `point`, with `itemCount` 0.
    [[nodiscard]] std::optional<ScrollRegionItem> scrollRegionAt(Point point);
    [[nodiscard]] ScrollRegionItem scrollRegion(std::size_t group);
    /// Moved into the range that there is.
    void setScrollOffset(std::size_t group, double offset);

private:
    std::unique_ptr<DocumentState> state_;
};

} // namespace quillmoth::markdown
