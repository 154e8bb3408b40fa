#pragma once

#include "MarkdownUI/Layout/PlainTextLayout.h"
#include "MarkdownUI/Qt/ItemContent.h"

namespace quillmoth::markdown {

/// Text without markup as the content of an item.
class PlainContent : public ItemContent {
public:
    PlainContent(TextEngine& engine, std::string text);

    void append(std::string_view piece) { layout_.append(piece); }

    void setOptions(const ItemOptions& options) override;

    double ensureLaidOut(double top, double bottom) override { return layout_.ensureLaidOut(top, bottom); }

    [[nodiscard]] double totalHeight() const override { return layout_.totalHeight(); }

    [[nodiscard]] bool isHeightExact() const override { return layout_.isHeightExact(); }

    [[nodiscard]] double usedWidth() const override { return layout_.usedWidth(); }

    [[nodiscard]] double firstLineCenter() override { return layout_.firstLineCenter(); }

    [[nodiscard]] DisplayList displayList(const Rect& area) override { return layout_.displayList(area); }

    [[nodiscard]] std::string textOfBlock(std::size_t block) const override;
    [[nodiscard]] TextRange wholeRange() const override;

    [[nodiscard]] TextPosition positionAt(Point point) override { return layout_.positionAt(point); }

    [[nodiscard]] bool isTextAt(Point point) override;

    [[nodiscard]] std::vector<Rect> selectionRectangles(const TextRange& range, const Rect& area) override {
        return layout_.selectionRectangles(range, area);
    }

    [[nodiscard]] Rect caretRectangle(const TextPosition& position) override {
        return layout_.caretRectangle(position);
    }

    [[nodiscard]] std::string plainText(const TextRange& range) const override;

    [[nodiscard]] const std::string& documentText() const override { return layout_.text(); }

    [[nodiscard]] std::size_t documentOffset(const TextPosition& position) const override;
    [[nodiscard]] TextPosition positionAtDocumentOffset(std::size_t offset) const override;

private:
    TextEngine& engine_;
    PlainTextLayout layout_;
};

} // namespace quillmoth::markdown
