#include "Foundation/Qt/Transition.h"

#include <QApplication>
#include <QColor>
#include <QStyle>
#include <QWidget>

#include <utility>

namespace quillmoth {

Transition::Transition(QWidget& owner, double start) : Transition([&owner] { owner.update(); }) {
    owner_ = &owner;
    target_ = start;
}

Transition::Transition(std::function<void()> changed) : changed_(std::move(changed)) {
    animation_.setEasingCurve(QEasingCurve::OutCubic);
    QObject::connect(&animation_, &QVariantAnimation::valueChanged, &animation_, [this] { changed_(); });
}

double Transition::value() const {
    return animation_.state() == QAbstractAnimation::Running ? animation_.currentValue().toDouble() : target_;
}

void Transition::moveTo(double target, int milliseconds) {
    if (target == target_)
        return;
    const double from = value();
    animation_.stop();
    target_ = target;
    if (animates(owner_) && (owner_ == nullptr || owner_->isVisible())) {
        animation_.setStartValue(from);
        animation_.setEndValue(target);
        animation_.setDuration(milliseconds);
        animation_.start();
    }
    changed_();
}

QColor blended(const QColor& from, const QColor& to, double fraction) {
    const auto mix = [share = static_cast<float>(fraction)](float first, float second) {
        return first + (second - first) * share;
    };
    return QColor::fromRgbF(mix(from.redF(), to.redF()), mix(from.greenF(), to.greenF()),
                            mix(from.blueF(), to.blueF()), mix(from.alphaF(), to.alphaF()));
}

bool animates(const QWidget* widget) {
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr)
        return false;
    const QStyle& style = widget != nullptr ? *widget->style() : *QApplication::style();
    return style.styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, widget) > 0;
}

} // namespace quillmoth
