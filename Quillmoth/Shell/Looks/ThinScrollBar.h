#pragma once

#include <QAbstractSlider>

namespace quillmoth {

/// A vertical scroll bar without track and arrows, which lies in the padding beside what it scrolls. It is
/// hidden while everything fits.
class ThinScrollBar final : public QAbstractSlider {
public:
    /// Where it can be seen and grabbed.
    static constexpr int kWidth = 10;

    explicit ThinScrollBar(QWidget* parent);

    /// How high the content and the part of it that is seen are.
    void setExtent(int content, int seen);

    [[nodiscard]] QRectF thumb() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    [[nodiscard]] double travel() const;

    double grabbedAt_ = 0;
};

} // namespace quillmoth
