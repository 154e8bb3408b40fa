#pragma once

#include "Quillmoth/Prompts/ExtractedText.h"

#include <QTextLayout>
#include <QWidget>

#include <vector>

namespace quillmoth {

/// The text of a form: its blanks stand out as chips, one for each line that a blank covers. It can be
/// selected.
class ChipText final : public QWidget {
public:
    explicit ChipText(QWidget* parent);

    void setPieces(const std::vector<ExtractedText>& pieces);
    void setFontSize(double pixelSize);

    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QString selectedText() const;
    void clearSelection();

    /// Where the chips are painted, from the top.
    [[nodiscard]] std::vector<QRectF> chips() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    struct Range {
        int start = 0;
        int end = 0;
    };

    void setUp();
    void layOut(int width) const;
    [[nodiscard]] bool isInChip(int position) const;
    [[nodiscard]] int positionAt(QPointF point) const;

    mutable QTextLayout layout_;
    mutable int laidOutWidth_ = -1;
    std::vector<Range> blanks_;
    std::vector<ExtractedText> pieces_;
    double fontSize_ = 16;
    int anchor_ = 0;
    int position_ = 0;
};

} // namespace quillmoth
