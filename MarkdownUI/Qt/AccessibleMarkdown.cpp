#include "MarkdownUI/Qt/AccessibleMarkdown.h"

#include <algorithm>
#include <utility>

namespace quillmoth::markdown {

namespace {

void announce(QWidget& widget, std::size_t part, QAccessible::Event what) {
    QAccessibleEvent event(&widget, what);
    event.setChild(static_cast<int>(part));
    QAccessible::updateAccessibility(&event);
}

} // namespace

AccessibleMarkdownText::AccessibleMarkdownText(MarkdownItem& item, Origin origin)
    : item_(item), origin_(std::move(origin)) {}

const UTF16Index& AccessibleMarkdownText::index() const {
    const std::string& text = std::as_const(item_).content().documentText();
    if (text != indexedText_) {
        indexedText_ = text;
        index_ = UTF16Index(indexedText_);
    }
    return index_;
}

TextPosition AccessibleMarkdownText::positionOf(int offset) const {
    return item_.content().positionAtDocumentOffset(index().byteOf(offset));
}

int AccessibleMarkdownText::offsetOf(const TextPosition& position) const {
    return index().utf16Of(item_.content().documentOffset(position));
}

QRect AccessibleMarkdownText::onScreen(const Rect& rect) const {
    return QRectF(rect.x, rect.y, rect.width, rect.height).toAlignedRect().translated(origin_());
}

void AccessibleMarkdownText::selection(int selectionIndex, int* startOffset, int* endOffset) const {
    *startOffset = *endOffset = 0;
    if (selectionIndex == 0 && item_.hasSelection()) {
        *startOffset = offsetOf(item_.selection().begin);
        *endOffset = offsetOf(item_.selection().end);
    }
}

int AccessibleMarkdownText::selectionCount() const {
    return item_.hasSelection() ? 1 : 0;
}

void AccessibleMarkdownText::addSelection(int startOffset, int endOffset) {
    setSelection(0, startOffset, endOffset);
}

void AccessibleMarkdownText::removeSelection(int /*selectionIndex*/) {
    item_.clearSelection();
}

void AccessibleMarkdownText::setSelection(int /*selectionIndex*/, int startOffset, int endOffset) {
    item_.select(
        {positionOf(std::min(startOffset, endOffset)), positionOf(std::max(startOffset, endOffset))});
}

int AccessibleMarkdownText::cursorPosition() const {
    return offsetOf(item_.selection().end);
}

void AccessibleMarkdownText::setCursorPosition(int position) {
    item_.select({positionOf(position), positionOf(position)});
}

QString AccessibleMarkdownText::text(int startOffset, int endOffset) const {
    return index().text().mid(startOffset, std::max(endOffset - startOffset, 0));
}

int AccessibleMarkdownText::characterCount() const {
    return static_cast<int>(index().text().size());
}

QRect AccessibleMarkdownText::characterRect(int offset) const {
    const TextPosition begin = positionOf(offset);
    return rectangleOf({begin, std::max(begin, positionOf(offset + 1))});
}

QRect AccessibleMarkdownText::rectangleOf(const TextRange& range) const {
    ItemContent& content = item_.content();
    const Rect caret = content.caretRectangle(range.begin);
    if (range.begin.block != range.end.block)
        return onScreen(caret);
    const Rect last = content.caretRectangle(range.end);
    const bool isOneLine = last.y == caret.y;
    const Rect line{std::min(caret.x, last.x), caret.y, std::abs(last.x - caret.x), caret.height};
    return onScreen(isOneLine ? line : caret);
}

int AccessibleMarkdownText::offsetAtPoint(const QPoint& point) const {
    const QPoint inside = point - origin_();
    return offsetOf(
        item_.content().positionAt({static_cast<double>(inside.x()), static_cast<double>(inside.y())}));
}

void AccessibleMarkdownText::scrollToSubstring(int startIndex, int /*endIndex*/) {
    setCursorPosition(startIndex);
}

QString AccessibleMarkdownText::attributes(int offset, int* startOffset, int* endOffset) const {
    *startOffset = *endOffset = offset;
    if (item_.content().document() == nullptr) {
        *startOffset = 0;
        *endOffset = characterCount();
        return {};
    }
    const TextPosition position = positionOf(offset);
    const auto holds = [&position](const PartInfo& part) {
        return part.range.begin <= position && position < part.range.end;
    };
    const auto& parts = item_.parts();
    auto found = std::find_if(parts.begin(), parts.end(), [&holds](const PartInfo& part) {
        return part.kind == PartInfo::Kind::link && holds(part);
    });
    if (found == parts.end())
        found = std::find_if(parts.begin(), parts.end(), holds);
    if (found == parts.end()) {
        *endOffset = offset + 1;
        return {};
    }
    *startOffset = offsetOf(found->range.begin);
    *endOffset = offsetOf(found->range.end);
    return found->kind == PartInfo::Kind::link
               ? QStringLiteral("href:%1;").arg(QString::fromStdString(found->destination))
               : QStringLiteral("level:%1;").arg(found->level);
}

void announceFocusedPart(QWidget& widget, const MarkdownItem& item) {
    if (item.focusedPart())
        announce(widget, *item.focusedPart(), QAccessible::Focus);
}

void announceCopyButton(QWidget& widget, const MarkdownItem& item, std::size_t codeBlock) {
    const auto& parts = item.parts();
    const auto button = std::find_if(parts.begin(), parts.end(), [codeBlock](const PartInfo& part) {
        return part.kind == PartInfo::Kind::copyButton && part.place == codeBlock;
    });
    if (button != parts.end())
        announce(widget, static_cast<std::size_t>(button - parts.begin()), QAccessible::NameChanged);
}

} // namespace quillmoth::markdown
