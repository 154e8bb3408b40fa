#pragma once

#include "MarkdownUI/Qt/CodeControls.h"
#include "MarkdownUI/Qt/ItemContent.h"
#include "MarkdownUI/Qt/ItemSelection.h"
#include "MarkdownUI/Qt/MarkdownHost.h"
#include "MarkdownUI/Qt/MarkdownServices.h"

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <Qt>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class QKeyEvent;
class QMenu;
class QPainter;
class QWheelEvent;

namespace quillmoth::markdown {

enum class TextForm : std::uint8_t { plain, markdown };

/// A text, as it stands or as a Markdown document, that can be shown anywhere in a widget: it lays out,
/// paints, and answers pointer and keys, but is no widget. The widget gives it events in its own coordinates
/// (origin at its top left corner) and paints it. Main thread.
class MarkdownItem {
public:
    /// Both outlive the item.
    MarkdownItem(MarkdownServices& services, MarkdownHost& host);
    ~MarkdownItem();
    MarkdownItem(const MarkdownItem&) = delete;
    MarkdownItem& operator=(const MarkdownItem&) = delete;

    // Content. A document that follows a document keeps the states of its code blocks.
    void setText(std::string_view text);
    /// In the plain form this costs the same however long the text is, as Markdown as much as setting it.
    void append(std::string_view piece);
    /// Shows the same text otherwise. What was parsed and laid out of either form is kept for its return.
    void setForm(TextForm form);

    [[nodiscard]] const std::string& text() const { return text_; }

    /// Asks again for images that failed, for when the item is seen again.
    void retryImages();

    void setWidth(double width);
    void setFontSize(double size);
    void setAlignment(TextAlignment alignment);
    /// Of text that has no colour of its own; the palette's where invalid.
    void setTextColor(const QColor& color);
    /// From one line of plain text to the next, in pixels; 0 for that of a paragraph.
    void setLineHeight(double height);

    // Geometry.
    /// Estimated in part until `isHeightExact`: what has not been seen yet has not been laid out.
    [[nodiscard]] double height() const;
    [[nodiscard]] bool isHeightExact() const;
    [[nodiscard]] double usedWidth() const;
    [[nodiscard]] double firstLineCenter();
    /// Lays out what is between two heights. Returns how far that has moved down: add it to the scroll
    /// position.
    double ensureLaidOut(double top, double bottom);

    /// Paints what is in `exposed` (the item's coordinates) with the item's corner at `origin`.
    void paint(QPainter& painter, const QRectF& exposed, const QPointF& origin);
    [[nodiscard]] DisplayList displayList(const QRectF& area);

    // Pointer. The left button only; `clicks` is 1, 2 or 3.
    void mousePress(const QPointF& point, int clicks, Qt::KeyboardModifiers modifiers);
    void mouseMove(const QPointF& point, bool isPressed);
    void mouseRelease(const QPointF& point);
    void leave();
    [[nodiscard]] Qt::CursorShape cursorAt(const QPointF& point);
    /// True where a press does something other than nothing: on text, links, buttons, scroll bars.
    [[nodiscard]] bool isInteractiveAt(const QPointF& point);
    [[nodiscard]] QString linkAt(const QPointF& point);
    /// True where a code block takes it; a vertical turn is left alone but with Shift.
    bool wheel(const QWheelEvent& event, const QPointF& point);

    /// True where the item takes the key: moves and copies of the selection, sideways scrolling of code,
    /// Return on what has the focus.
    bool keyPress(const QKeyEvent& event);
    /// Gives the keyboard's focus to the next link or button, for the Tab key. False behind the last one.
    bool focusNextControl(bool isForward);

    void clearFocus();
    /// Where that stands which has the focus: to be scrolled into view.
    [[nodiscard]] std::optional<QRectF> focusedFrame();

    /// Adds "Copy", "Copy Link" and "Select All" for a menu at `point`.
    void addActions(QMenu& menu, const QPointF& point);

    // Selection.
    [[nodiscard]] bool hasSelection() const { return !selection_.isEmpty(); }

    [[nodiscard]] const TextRange& selection() const { return selection_.range(); }

    [[nodiscard]] QString selectedText() const;
    void select(const TextRange& range);
    void selectAll();
    void clearSelection();
    void copySelection();
    [[nodiscard]] QRectF caretRectangle();

    // For accessibility and tests.
    /// Headings, links, images and copy buttons in reading order; none in text without markup.
    [[nodiscard]] const std::vector<PartInfo>& parts() const;

    /// The part that has the focus; it holds until the next change of the content. An image that
    /// arrives is none.
    [[nodiscard]] std::optional<std::size_t> focusedPart() const { return focusedPart_; }

    /// As a press on the part would.
    void activate(const PartInfo& part);

    /// Another one after each change of the content.
    [[nodiscard]] std::size_t version() const { return version_; }

    [[nodiscard]] ItemContent& content() { return *content_; }

    [[nodiscard]] const ItemContent& content() const { return *content_; }

    [[nodiscard]] MarkdownHost& host() { return host_; }

private:
    void forgetDocument();
    [[nodiscard]] ItemContent& contentOf(TextForm form);
    void contentChanged();
    void imagesChanged();
    void applyOptions();
    void updateLink(const QPointF& point);
    [[nodiscard]] const PartInfo* linkPartAt(Point point);
    void setFocusedPart(std::optional<std::size_t> part);
    bool activateByKey(const QKeyEvent& event);
    bool moveByKey(const QKeyEvent& event);
    bool scrollByKey(const QKeyEvent& event);
    [[nodiscard]] PaintState paintState(const Rect& area);

    MarkdownServices& services_;
    MarkdownHost& host_;
    ItemOptions options_;
    QColor textColor_;
    std::string text_;
    TextForm form_ = TextForm::plain;
    std::unique_ptr<class PlainContent> plain_;       ///< of `text_`; null until it is shown so
    std::unique_ptr<class DocumentContent> document_; ///< likewise
    ItemContent* content_ = nullptr;                  ///< the one that is shown
    std::unique_ptr<CodeControls> controls_;          ///< of `document_`
    ItemSelection selection_;
    bool isSelecting_ = false;
    bool hasCaret_ = false;
    mutable std::optional<std::vector<PartInfo>> parts_; ///< of the content, once asked for
    std::size_t version_ = 0;
    std::optional<PartInfo> hoveredLink_;
    std::optional<std::size_t> focusedPart_;
    QString pressedLink_;
    std::shared_ptr<void> imageSubscription_;
};

} // namespace quillmoth::markdown
