#include "Quillmoth/Shell/Looks/HoverFade.h"

#include <QEvent>
#include <QStyle>
#include <QVariantAnimation>
#include <QWidget>

namespace quillmoth {

namespace {

constexpr int kDuration = 90;

/// Belongs to its control.
class HoverFade final : public QVariantAnimation {
public:
    explicit HoverFade(QWidget* control) : QVariantAnimation(control) {
        setEasingCurve(QEasingCurve::OutCubic);
        setStartValue(0.0);
        setEndValue(0.0);
        control->setAttribute(Qt::WA_Hover);
        control->installEventFilter(this);
        connect(this, &QVariantAnimation::valueChanged, control, [control] { control->update(); });
    }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::HoverEnter)
            fadeTo(1);
        else if (event->type() == QEvent::HoverLeave || event->type() == QEvent::Hide)
            fadeTo(0);
        return false;
    }

    [[nodiscard]] double share() const { return currentValue().toDouble(); }

private:
    void fadeTo(double target) {
        const auto* control = static_cast<QWidget*>(parent());
        const bool isAnimated =
            control->isVisible() &&
            control->style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, control) > 0;
        const double from = share();
        stop();
        setStartValue(from);
        setEndValue(target);
        setDuration(isAnimated ? kDuration : 0);
        start();
    }
};

HoverFade* fadeOf(const QWidget* control) {
    for (QObject* child : control->children()) {
        if (auto* fade = dynamic_cast<HoverFade*>(child))
            return fade;
    }
    return nullptr;
}

} // namespace

void fadeOnHover(QWidget* control) {
    if (!fadeOf(control))
        new HoverFade(control);
}

double hoverShare(const QWidget* control) {
    const HoverFade* fade = control ? fadeOf(control) : nullptr;
    return fade ? fade->share() : 0;
}

} // namespace quillmoth
