#pragma once

#include "Foundation/Qt/Transition.h"

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
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    Transition hover_{*this, 90};
};

} // namespace quillmoth
