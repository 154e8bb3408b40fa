#include "Quillmoth/Shell/Controls/FocusRing.h"

#include "Quillmoth/Shell/Looks/Palette.h"

#include <QAbstractScrollArea>
#include <QEvent>
#include <QPainter>
#include <QPainterPath>

namespace quillmoth {

namespace {

constexpr int kWidth = 3;
constexpr double kInnerRadius = 7;

bool isViewport(const QWidget* widget) {
    const auto* area = qobject_cast<const QAbstractScrollArea*>(widget->parentWidget());
    return area != nullptr && area->viewport() == widget;
}

} // namespace

FocusRing::FocusRing(QWidget* window) : QWidget(window), window_(window) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hide();
}

void FocusRing::surround(QWidget* control) {
    for (const auto& widget : watched_) {
        if (widget)
            widget->removeEventFilter(this);
    }
    watched_.clear();
    control_ = control;
    hide();
    if (control == nullptr)
        return;
    QWidget* host = control;
    for (QWidget* widget = control; widget != window_ && !isViewport(widget);
         widget = widget->parentWidget()) {
        widget->installEventFilter(this);
        watched_.emplace_back(widget);
        host = widget;
    }
    setParent(host == control ? window_ : host);
    place();
    show();
    raise();
}

void FocusRing::place() {
    if (!control_)
        return;
    const QRect inHost(control_->mapTo(parentWidget(), QPoint(0, 0)), control_->size());
    setGeometry(inHost.adjusted(-kWidth, -kWidth, kWidth, kWidth));
}

bool FocusRing::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::Move || event->type() == QEvent::Resize)
        place();
    else if (event->type() == QEvent::Hide)
        hide();
    else if (event->type() == QEvent::Show && control_)
        show();
    return false;
}

void FocusRing::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath ring;
    ring.addRoundedRect(QRectF(rect()), kInnerRadius + kWidth, kInnerRadius + kWidth);
    ring.addRoundedRect(QRectF(rect()).adjusted(kWidth, kWidth, -kWidth, -kWidth), kInnerRadius,
                        kInnerRadius);
    painter.fillPath(ring, windowTheme(palette()).ring);
}

} // namespace quillmoth
