#pragma once

#include "Foundation/Qt/ClickCounter.h"
#include "MarkdownUI/Qt/MarkdownHost.h"
#include "MarkdownUI/Qt/MarkdownItem.h"
#include "MarkdownUI/Qt/MarkdownServices.h"

#include "ScrollBar.h"

#include <QBasicTimer>
#include <QWidget>

#include <functional>

namespace quillmoth::markdown {

/// A scrolling view of one document: one widget, which paints what is visible and lays out no more.
class MarkdownView : public QWidget, private MarkdownHost {
public:
    /// The services outlive the view.
    explicit MarkdownView(MarkdownServices& services, QWidget* parent = nullptr);
    ~MarkdownView() override;

    void setMarkdown(std::string_view markdown);

    [[nodiscard]] MarkdownItem& item() { return item_; }

    [[nodiscard]] double scrollPosition() const { return scroll_; }

    void setScrollPosition(double position);

    /// Where the item's corner stands in the widget.
    [[nodiscard]] QPointF itemOrigin() const;

    /// Called with the destination of a link that was clicked.
    std::function<void(const QString& url)> onLinkActivated;
    /// Called with what is to be put on the clipboard; by default it goes there.
    std::function<void(const QString& text)> onCopy;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    bool focusNextPrevChild(bool isNext) override;

private:
    // MarkdownHost
    void itemChanged(const QRectF& area) override;
    void itemResized() override;
    void openLink(const QString& url) override;
    void copyText(const QString& text) override;
    void copyButtonRenamed(std::size_t codeBlock) override;
    void callAfter(std::chrono::milliseconds delay, std::function<void()> work) override;

    void press(QMouseEvent* event);
    bool scrollByKey(const QKeyEvent& event);
    void showCaret();
    void showFrame(const QRectF& frame);
    void layOutVisible();
    void dragBarTo(double y);
    [[nodiscard]] ScrollBar::Extent extent() const;

    [[nodiscard]] QPointF toItem(const QPointF& point) const { return point - itemOrigin(); }

    MarkdownServices& services_;
    MarkdownItem item_;
    ClickCounter clicks_;
    ScrollBar bar_;
    QBasicTimer autoScroll_; ///< runs while a selection is dragged beyond an edge
    QPointF pointer_;
    double scroll_ = 0;
    bool isLayingOut_ = false;
};

} // namespace quillmoth::markdown
