#pragma once

#include <QScrollBar>

namespace quillmoth {

/// A vertical scroll bar that is a thumb with round ends, without track and arrows.
class ThinScrollBar final : public QScrollBar {
public:
    /// How wide it is, with what is free on both sides of the thumb.
    static constexpr int kWidth = 10;

    /// What it stands in, which gives the colours. In the panel it lies in the padding beside what it
    /// scrolls; the outermost pixels belong to the resizing there, and do not grab it.
    enum class Place { window, panel };

    explicit ThinScrollBar(Place place, QWidget* parent = nullptr);

    /// How high the content and the part of it that is seen are. Hides the bar while everything fits.
    void setExtent(int content, int seen);

    [[nodiscard]] QRectF thumb() const;

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    [[nodiscard]] double travel() const;
    [[nodiscard]] QColor color() const;

    Place place_;
    double grabbedAt_ = 0;
};

} // namespace quillmoth
