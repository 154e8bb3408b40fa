#pragma once

#include "MarkdownUI/Qt/CodeControls.h"
#include "MarkdownUI/Qt/ItemSelection.h"
#include "MarkdownUI/Qt/ItemText.h"

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <Qt>

#include <memory>
#include <optional>
#include <vector>

class QKeyEvent;
class QMenu;
class QPainter;
class QWheelEvent;

namespace quillmoth::markdown {

/// A text that can be shown anywhere in a widget: it paints, and answers pointer and keys, but is no widget.
/// The widget gives it events in its own coordinates (origin at its top left corner) and paints it. Main
/// thread.
class MarkdownItem final : public ItemText {
public:
    /// Both outlive the item.
    MarkdownItem(MarkdownServices& services, MarkdownHost& host);

    /// Asks again for images that failed, for when the item is seen again.
    void retryImages();
    /// Of text that has no colour of its own; the palette's where invalid.
    void setTextColor(const QColor& color);
    /// Paints what is in `exposed` (the item's coordinates) with the item's corner at `origin`.
    void paint(QPainter& painter, const QRectF& exposed, const QPointF& origin);

    // Pointer. The left button only; `clicks` is 1, 2 or 3.
    void mousePress(const QPointF& point, int clicks, Qt::KeyboardModifiers modifiers);
    void mouseMove(const QPointF& point, bool isPressed);
    void mouseRelease(const QPointF& point);
    void leave();
    [[nodiscard]] Qt::CursorShape cursorAt(const QPointF& point);
    /// True where a press does something other than nothing: on text, links, buttons, scroll bars.
    [[nodiscard]] bool isInteractiveAt(const QPointF& point);
    [[nodiscard]] QString linkAt(const QPointF& point);
    /// Where a press at `point` leads: the link, or the image that it loads.
    [[nodiscard]] QString targetAt(const QPointF& point);
    /// True where a code block takes it; a vertical turn is left alone but with Shift.
    bool wheel(const QWheelEvent& event, const QPointF& point);

    /// True where the item takes the key: moves and copies of the selection, sideways scrolling of code,
    /// Return on what has the focus, Space on a button or an image to be loaded.
    bool keyPress(const QKeyEvent& event);
    /// Gives the keyboard's focus to the next link or button, for the Tab key. False behind the last one.
    bool focusNextControl(bool isForward);

    void clearFocus();
    /// Where that stands which has the focus: to be scrolled into view.
    [[nodiscard]] std::optional<QRectF> focusedFrame();

    /// Adds what can be done to the image at `point`, then "Copy", "Copy Link" and "Select All".
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

    /// The index of the part that has the focus. It changes with the content, but not with an image that
    /// arrives.
    [[nodiscard]] std::optional<std::size_t> focusedPart() const { return focusedPart_; }

    /// As a press on the part would.
    void activate(const PartInfo& part);

    /// What stands for an image that is not loaded; nothing for other parts.
    [[nodiscard]] std::optional<ImagePlaceholder> placeholderOf(const PartInfo& part) const;

    /// Loads the image, and from now on all others of its host.
    void alwaysLoad(const PartInfo& part);

    /// Where a press on the part that has the focus leads; empty for none.
    [[nodiscard]] QString focusedTarget() const;

    /// Counts the changes of the content.
    [[nodiscard]] std::size_t version() const { return version_; }

private:
    void contentChanged() override;
    void documentGoes() override;

    [[nodiscard]] bool isHeld() const override { return isSelecting_ || hasSelection(); }

    void imagesChanged();
    void addImageActions(QMenu& menu, const QPointF& point);
    /// The URL of the image that a press at `point` loads; empty for none.
    [[nodiscard]] std::string heldImageAt(const QPointF& point);
    void updateLink(const QPointF& point);
    [[nodiscard]] const PartInfo* linkPartAt(Point point);
    void setFocusedPart(std::optional<std::size_t> part);
    bool activateByKey(const QKeyEvent& event);
    bool moveByKey(const QKeyEvent& event);
    bool scrollByKey(const QKeyEvent& event);
    [[nodiscard]] PaintState paintState(const Rect& area);

    QColor textColor_;
    std::unique_ptr<CodeControls> controls_; ///< of the document
    ItemSelection selection_;
    bool isSelecting_ = false;
    bool hasCaret_ = false;
    mutable std::optional<std::vector<PartInfo>> parts_; ///< of the content, once asked for
    std::size_t version_ = 0;
    std::optional<PartInfo> hoveredLink_;
    std::optional<std::size_t> focusedPart_;
    QString pressedLink_;
    std::string pressedImage_; ///< URL of one to be loaded
    std::shared_ptr<void> imageSubscription_;
};

} // namespace quillmoth::markdown
