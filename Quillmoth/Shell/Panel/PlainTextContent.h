#pragma once

#include "Foundation/Qt/ClickCounter.h"
#include "Quillmoth/Shell/Panel/MessageContent.h"
#include "Quillmoth/Shell/Panel/TextColumn.h"

#include <QBasicTimer>

namespace quillmoth {

/// Plain text that can be selected. A long one is set in slices, between which the panel answers.
class PlainTextContent final : public MessageContent {
public:
    explicit PlainTextContent(QWidget* parent);

    void setColor(const QColor& color);
    void setAlignment(Qt::Alignment alignment);
    /// 0 for the height that goes with the font.
    void setLineHeight(int pixels);

    void setText(const std::string& text) override;
    void appendText(const std::string& more) override;
    void setFontSize(double pixelSize) override;
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] int naturalWidth(int available) const override;
    [[nodiscard]] double firstLineMiddle() const override;
    [[nodiscard]] QString selectedText() const override;
    void clearSelection() override;

    [[nodiscard]] const TextColumn& column() const { return column_; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void applyStyle();
    void select(int anchor, int position);
    void selectWord(int position);
    void selectParagraph(int position);
    void setRestLater() const;

    // Asking for a height sets the width; the text is the same.
    mutable TextColumn column_;
    mutable QBasicTimer rest_;
    ClickCounter clicks_;
    QColor color_;
    Qt::Alignment alignment_ = Qt::AlignLeft;
    double fontSize_ = 16;
    int lineHeight_ = 0;
    int anchor_ = 0;
    int position_ = 0;
};

} // namespace quillmoth
