#pragma once

#include "Foundation/Qt/Transition.h"

#include <QCheckBox>

#include <functional>

namespace quillmoth {

/// A check box that looks like a switch; the whole label takes clicks.
class Switch : public QCheckBox {
public:
    explicit Switch(const QString& text);

    /// Called when the user has switched, by whatever means.
    std::function<void(bool on)> onChange;

    /// Shows how it stands. Does not call `onChange`.
    void setOn(bool on);

    [[nodiscard]] QSize sizeHint() const override;

    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

    [[nodiscard]] bool hitButton(const QPoint& position) const override { return rect().contains(position); }

private:
    Transition slide_{*this};
    bool isShowing_ = false;
};

} // namespace quillmoth
