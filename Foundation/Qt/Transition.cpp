#include "Foundation/Qt/Transition.h"

#include <QColor>
#include <QStyle>
#include <QWidget>

namespace quillmoth {

Transition::Transition(QWidget& owner, int milliseconds) : owner_(owner), milliseconds_(milliseconds) {
    animation_.setEasingCurve(QEasingCurve::OutCubic);
    QObject::connect(&animation_, &QVariantAnimation::valueChanged, &owner, [this] { owner_.update(); });
}

double Transition::value() const {
    return animation_.state() == QAbstractAnimation::Running ? animation_.currentValue().toDouble() : target_;
}

void Transition::moveTo(double target) {
    if (target == target_)
        return;
    const double from = value();
    animation_.stop();
    target_ = target;
    if (animates(owner_) && owner_.isVisible()) {
        animation_.setStartValue(from);
        animation_.setEndValue(target);
        animation_.setDuration(milliseconds_);
        animation_.start();
    }
    owner_.update();
}

void Transition::jumpTo(double target) {
    animation_.stop();
    target_ = target;
    owner_.update();
}

QColor blended(const QColor& from, const QColor& to, double fraction) {
    const auto mix = [share = static_cast<float>(fraction)](float first, float second) {
        return first + (second - first) * share;
    };
    return QColor::fromRgbF(mix(from.redF(), to.redF()), mix(from.greenF(), to.greenF()),
                            mix(from.blueF(), to.blueF()), mix(from.alphaF(), to.alphaF()));
}

bool animates(const QWidget& widget) {
    return widget.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &widget) > 0;
}

} // namespace quillmoth
