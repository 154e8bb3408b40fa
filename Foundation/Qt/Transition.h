#pragma once

#include <QVariantAnimation>

#include <functional>

class QWidget;

namespace quillmoth {

/// A value that moves to where it is sent, fast at first and then slower. It jumps where the desktop's
/// animations are off. Main thread.
class Transition {
public:
    /// `owner` owns this and is painted again on every step; while it is hidden the value jumps.
    explicit Transition(QWidget& owner, double start = 0);

    /// `changed` is called on every step.
    explicit Transition(std::function<void()> changed);

    [[nodiscard]] double value() const;

    void moveTo(double target, int milliseconds);

private:
    QWidget* owner_ = nullptr;
    std::function<void()> changed_;
    double target_ = 0;
    QVariantAnimation animation_;
};

/// The colour at `fraction` on the way from one to the other.
[[nodiscard]] QColor blended(const QColor& from, const QColor& to, double fraction);

/// Whether the style of `widget` animates, or that of the program.
[[nodiscard]] bool animates(const QWidget* widget = nullptr);

} // namespace quillmoth
