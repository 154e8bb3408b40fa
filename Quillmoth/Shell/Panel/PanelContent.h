#pragma once

#include <QWidget>

#include <functional>

namespace quillmoth {

/// What a panel's window is filled with. What it leaves unpainted shows the panel's base.
class PanelContent : public QWidget {
public:
    using QWidget::QWidget;

    /// Whether the panel has the keyboard.
    virtual void setPanelActive(bool active) = 0;

    /// The least size at which everything can be used. It may grow and shrink with what is shown.
    [[nodiscard]] virtual QSize leastSize() const = 0;
    [[nodiscard]] virtual QSize naturalSize() const = 0;

    std::function<void()> onLeastSizeChanged;
};

} // namespace quillmoth
