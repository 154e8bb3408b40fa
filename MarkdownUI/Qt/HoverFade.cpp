#include "MarkdownUI/Qt/HoverFade.h"

#include <QApplication>
#include <QEasingCurve>
#include <QStyle>
#include <QVariantAnimation>

#include <utility>

namespace quillmoth::markdown {

namespace {

bool areAnimationsOn() {
    return qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr &&
           QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration) > 0;
}

} // namespace

HoverFade::HoverFade(std::chrono::milliseconds duration, std::function<void()> changed)
    : duration_(duration), changed_(std::move(changed)) {}

HoverFade::~HoverFade() = default;

double HoverFade::shareOf(std::size_t control) const {
    const auto known = shares_.find(control);
    return known != shares_.end() ? known->second : 0;
}

void HoverFade::clear() {
    animations_.clear();
    shares_.clear();
}

void HoverFade::setHovered(std::size_t control, bool isHovered) {
    const double target = isHovered ? 1 : 0;
    if (!areAnimationsOn()) {
        return setShare(control, target);
    }
    auto& animation = animations_[control];
    if (animation == nullptr) {
        animation = std::make_unique<QVariantAnimation>();
        animation->setEasingCurve(QEasingCurve::OutCubic);
        animation->setDuration(static_cast<int>(duration_.count()));
        QObject::connect(animation.get(), &QVariantAnimation::valueChanged,
                         [this, control](const QVariant& value) { setShare(control, value.toDouble()); });
    }
    animation->stop();
    animation->setStartValue(shareOf(control));
    animation->setEndValue(target);
    animation->start();
}

void HoverFade::setShare(std::size_t control, double share) {
    if (share <= 0) {
        shares_.erase(control);
    } else {
        shares_[control] = share;
    }
    changed_();
}

} // namespace quillmoth::markdown
