#pragma once

#include <QTimer>
#include <QWidget>

namespace quillmoth {

/// Turns while it is visible, and costs nothing otherwise.
class Spinner final : public QWidget {
public:
    explicit Spinner(QWidget* parent);

    /// Degrees, clockwise.
    void setAngle(double angle);

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void advance();

    QTimer timer_;
    double angle_ = 0;
};

} // namespace quillmoth
