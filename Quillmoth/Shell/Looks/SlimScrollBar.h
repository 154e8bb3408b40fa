#pragma once

#include <QScrollBar>

namespace quillmoth {

/// A vertical scroll bar that shows its thumb only, thin with round ends.
class SlimScrollBar final : public QScrollBar {
public:
    static constexpr int kWidth = 10;

    explicit SlimScrollBar(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quillmoth
