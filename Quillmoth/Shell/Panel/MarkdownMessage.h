#pragma once

#include "Foundation/Qt/ClickCounter.h"
#include "MarkdownUI/Qt/MarkdownHost.h"
#include "MarkdownUI/Qt/MarkdownItem.h"
#include "MarkdownUI/Qt/MarkdownServices.h"
#include "Quillmoth/Shell/Panel/MessageContent.h"

namespace quillmoth {

/// A finished answer, set as Markdown.
class MarkdownMessage final : public MessageContent, private markdown::MarkdownHost {
public:
    using OpenLink = std::function<void(const QString& url)>;

    /// The services outlive it.
    MarkdownMessage(markdown::MarkdownServices& services, OpenLink openLink, QWidget* parent);

    void setText(const std::string& text) override;
    /// Costs as much as setting the whole text: an answer that still comes in is plain.
    void appendText(const std::string& more) override;
    void setFontSize(double pixelSize) override;
    [[nodiscard]] int heightForWidth(int width) const override;

    [[nodiscard]] int naturalWidth(int available) const override { return available; }

    [[nodiscard]] double firstLineMiddle() const override;
    int prepareToShow(int top, int bottom) override;
    [[nodiscard]] QString selectedText() const override;
    void clearSelection() override;

    [[nodiscard]] markdown::MarkdownItem& item() { return item_; }

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool isNext) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void itemChanged(const QRectF& area) override;
    void itemResized() override;
    void openLink(const QString& url) override;
    void copyText(const QString& text) override;
    void copyButtonRenamed(std::size_t codeBlock) override;
    void callAfter(std::chrono::milliseconds delay, std::function<void()> work) override;

    double layOut(double top, double bottom);
    void press(QMouseEvent* event);
    bool focusNextControl(bool isNext);

    OpenLink openLink_;
    ClickCounter clicks_;
    // Asking for a height sets the width; the text is the same.
    mutable markdown::MarkdownItem item_;
    std::string text_;
    mutable int toldHeight_ = 0;
    bool resizeTold_ = false;
};

/// Makes such contents for a conversation.
[[nodiscard]] MessageContentFactory markdownMessages(markdown::MarkdownServices& services,
                                                     MarkdownMessage::OpenLink openLink);

} // namespace quillmoth
