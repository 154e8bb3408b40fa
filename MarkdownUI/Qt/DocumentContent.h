#pragma once

#include "MarkdownUI/Qt/ItemContent.h"

#include <utility>

namespace quillmoth::markdown {

/// A Markdown document as the content of an item.
class DocumentContent : public ItemContent {
public:
    DocumentContent(TextEngine& engine, ImageSource& images, const CodeSyntaxHighlighter* highlighter,
                    MarkdownContent content);

    void setOptions(const ItemOptions& options) override;

    double ensureLaidOut(double top, double bottom) override { return layout_.ensureLaidOut(top, bottom); }

    [[nodiscard]] double totalHeight() const override { return layout_.totalHeight(); }

    [[nodiscard]] bool isHeightExact() const override { return layout_.isHeightExact(); }

    [[nodiscard]] double usedWidth() const override { return layout_.usedWidth(); }

    [[nodiscard]] double firstLineCenter() override { return layout_.firstLineCenter(); }

    [[nodiscard]] DisplayList displayList(const Rect& area) override { return layout_.displayList(area); }

    [[nodiscard]] std::string textOfBlock(std::size_t block) const override {
        return layout_.textOfBlock(block);
    }

    [[nodiscard]] TextRange wholeRange() const override { return layout_.wholeRange(); }

    [[nodiscard]] TextPosition positionAt(Point point) override { return layout_.positionAt(point); }

    [[nodiscard]] bool isTextAt(Point point) override { return layout_.isTextAt(point); }

    [[nodiscard]] std::vector<Rect> selectionRectangles(const TextRange& range, const Rect& area) override {
        return layout_.selectionRectangles(range, area);
    }

    [[nodiscard]] Rect caretRectangle(const TextPosition& position) override {
        return layout_.caretRectangle(position);
    }

    [[nodiscard]] std::string plainText(const TextRange& range) const override {
        return layout_.plainText(range);
    }

    [[nodiscard]] const std::string& documentText() const override { return layout_.documentText(); }

    [[nodiscard]] std::size_t documentOffset(const TextPosition& position) const override {
        return layout_.documentOffset(position);
    }

    [[nodiscard]] TextPosition positionAtDocumentOffset(std::size_t offset) const override {
        return layout_.positionAtDocumentOffset(offset);
    }

    [[nodiscard]] bool hasBlocks() const override { return true; }

    void setContent(MarkdownContent content) { layout_.setContent(std::move(content)); }

    [[nodiscard]] DocumentLayout* document() override { return &layout_; }

private:
    DocumentLayout layout_;
};

} // namespace quillmoth::markdown
