#pragma once

#include <QVariantAnimation>

class QWidget;

namespace quillmoth {

/// A value between 0 and 1 that moves to where it is sent, and has its widget painted meanwhile. It jumps
/// where the desktop's animations are off.
class Transition {
public:
    /// `owner` owns this and is repainted on every step.
    Transition(QWidget& owner, int milliseconds);

    [[nodiscard]] double value() const;

    void moveTo(double target);
    void jumpTo(double target);

private:
    QWidget& owner_;
    int milliseconds_;
    double target_ = 0;
    QVariantAnimation animation_;
};

/// The colour at `fraction` on the way from one to the other.
[[nodiscard]] QColor blended(const QColor& from, const QColor& to, double fraction);

/// Whether the style of `widget` animates.
[[nodiscard]] bool animates(const QWidget& widget);

} // namespace quillmoth
