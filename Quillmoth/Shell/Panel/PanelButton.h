#pragma once

#include <QPushButton>

namespace quillmoth {

/// A push button of the panel.
class PanelButton final : public QPushButton {
public:
    static constexpr int kHeight = 26;

    PanelButton(const QString& text, QWidget* parent);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quillmoth
