#pragma once

#include "Foundation/Qt/ClickCounter.h"
#include "MarkdownUI/Qt/MarkdownHost.h"
#include "MarkdownUI/Qt/MarkdownItem.h"
#include "MarkdownUI/Qt/MarkdownServices.h"

#include <QWidget>

#include <functional>
#include <string>
#include <string_view>

namespace quillmoth {

/// What the texts of a panel share.
struct MessageServices {
    markdown::MarkdownServices* markdown = nullptr; ///< not null; outlives the texts
    /// Returns what is to be told where the link is not opened.
    std::function<QString(const QString& url)> openLink;
    /// Tells where the link leads that is pointed at or has the focus, or what openLink has returned, which
    /// is to be heard; an empty text for nothing.
    std::function<void(const QString& text, bool isHeard)> tell{};
};

/// A text that the user can select and copy, plain or set as Markdown. Its height follows from its width
/// (heightForWidth). It never takes the keyboard from the field by a click; the Tab key leads to what is set
/// as Markdown.
class MessageContent final : public QWidget, private markdown::MarkdownHost {
public:
    MessageContent(const MessageServices& services, QWidget* parent);
    ~MessageContent() override;

    /// False where it is the same text.
    bool setText(const std::string& text);
    /// Puts more text behind it. While it is plain the price does not grow with what is there.
    void append(std::string_view more);
    void setForm(markdown::TextForm form);
    void setFontSize(double pixelSize);

    /// To take no more of the width than its lines need.
    void setShrinking(bool isShrinking) { isShrinking_ = isShrinking; }

    [[nodiscard]] const std::string& text() const { return item_.text(); }

    [[nodiscard]] int heightForWidth(int width) const override;

    /// What it takes of the width that its height was asked for.
    [[nodiscard]] int takenWidth() const { return takenWidth_; }

    /// The middle of the first line, from the top.
    [[nodiscard]] double firstLineMiddle() const { return item_.firstLineCenter(); }

    /// The part between two heights is going to be seen. Returns how far it has moved down by getting exact
    /// what was estimated.
    int prepareToShow(int top, int bottom);

    /// Empty where nothing is selected.
    [[nodiscard]] QString selectedText() const { return item_.selectedText(); }

    void clearSelection() { item_.clearSelection(); }

    [[nodiscard]] markdown::MarkdownItem& item() { return item_; }

    /// The user has begun to select here.
    std::function<void()> onSelectionBegun;
    /// The height at the same width has changed without a call of the above.
    std::function<void()> onHeightChanged;
    /// A part of the content, as a range of heights, is to be seen.
    std::function<void(int top, int bottom)> onReveal;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
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
    void fit(int width) const;
    void press(QMouseEvent* event);
    bool focusNextControl(bool isNext);
    /// `pointed` is the link under the pointer, if any; else the one that has the focus counts.
    void tellLink(const QString& pointed = {});
    [[nodiscard]] QString focusedLink() const;
    void tellNoLink();

    std::function<QString(const QString& url)> openLink_;
    std::function<void(const QString& text, bool isHeard)> tell_;
    QString toldLink_;
    ClickCounter clicks_;
    // Asking for a height sets the width; the text is the same.
    mutable markdown::MarkdownItem item_;
    bool isShrinking_ = false;
    mutable int fittedWidth_ = -1; ///< that was asked for; -1 where the text has changed since
    mutable int takenWidth_ = 0;
    mutable int toldHeight_ = 0;
    bool resizeTold_ = false;
};

} // namespace quillmoth
