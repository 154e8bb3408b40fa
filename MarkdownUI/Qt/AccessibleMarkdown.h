#pragma once

#include "MarkdownUI/Qt/MarkdownItem.h"
#include "MarkdownUI/Qt/UTF16Index.h"

#include <QAccessible>
#include <QPoint>
#include <QRect>
#include <QString>

#include <functional>
#include <string>

namespace quillmoth::markdown {

/// The text of an item for assistive technology: one document in reading order, list markers and line feeds
/// included. Offsets are UTF-16 units. Main thread.
class AccessibleMarkdownText : public QAccessibleTextInterface {
public:
    /// Gives the item's origin on the screen.
    using Origin = std::function<QPoint()>;

    AccessibleMarkdownText(MarkdownItem& item, Origin origin);

    void selection(int selectionIndex, int* startOffset, int* endOffset) const override;
    [[nodiscard]] int selectionCount() const override;
    void addSelection(int startOffset, int endOffset) override;
    void removeSelection(int selectionIndex) override;
    void setSelection(int selectionIndex, int startOffset, int endOffset) override;
    [[nodiscard]] int cursorPosition() const override;
    void setCursorPosition(int position) override;
    [[nodiscard]] QString text(int startOffset, int endOffset) const override;
    [[nodiscard]] int characterCount() const override;
    [[nodiscard]] QRect characterRect(int offset) const override;
    [[nodiscard]] int offsetAtPoint(const QPoint& point) const override;
    void scrollToSubstring(int startIndex, int endIndex) override;
    /// "level:2;" in a heading, "href:…;" in a link, nothing elsewhere.
    [[nodiscard]] QString attributes(int offset, int* startOffset, int* endOffset) const override;

    [[nodiscard]] int offsetOf(const TextPosition& position) const;
    [[nodiscard]] QRect rectangleOf(const TextRange& range) const;
    [[nodiscard]] QRect onScreen(const Rect& rect) const;

    [[nodiscard]] MarkdownItem& item() const { return item_; }

private:
    [[nodiscard]] const UTF16Index& index() const;
    [[nodiscard]] TextPosition positionOf(int offset) const;

    MarkdownItem& item_;
    Origin origin_;
    mutable UTF16Index index_;
    mutable std::string indexedText_;
};

/// Tells assistive technology that the item's focused part has the focus. The widget's interface is an
/// AccessibleDocument.
void announceFocusedPart(QWidget& widget, const MarkdownItem& item);

/// The same of another name of the copy button of a code block.
void announceCopyButton(QWidget& widget, const MarkdownItem& item, std::size_t codeBlock);

} // namespace quillmoth::markdown
