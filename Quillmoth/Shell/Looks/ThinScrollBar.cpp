#include "Quillmoth/Shell/Looks/ThinScrollBar.h"

#include "Foundation/Qt/Transition.h"
#include "Quillmoth/Shell/Looks/Motion.h"
#include "Quillmoth/Shell/Looks/Palette.h"

#include <QMouseEvent>
#include <QPainter>

namespace quillmoth {

namespace {

constexpr double kEnds = 6;
constexpr double kLeastThumb = 28;
constexpr int kWheelStep = 60;
// The outermost pixels belong to the resizing of the panel.
constexpr int kUngrabbed = 3;

} // namespace

ThinScrollBar::ThinScrollBar(Place place, QWidget* parent) : QScrollBar(Qt::Vertical, parent), place_(place) {
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    setSingleStep(kWheelStep / 3);
    setAccessibleName(QStringLiteral("Scroll bar"));
    setContextMenuPolicy(Qt::NoContextMenu);
    setCursor(Qt::ArrowCursor);
    fadeOnHover(*this, motion::kScrollBar);
    if (place == Place::panel)
        hide();
}

QSize ThinScrollBar::sizeHint() const {
    return {kWidth, QScrollBar::sizeHint().height()};
}

void ThinScrollBar::setExtent(int content, int seen) {
    setPageStep(seen);
    setRange(0, qMax(0, content - seen));
    setVisible(maximum() > 0);
    update();
}

double ThinScrollBar::travel() const {
    return height() - 2 * kEnds - thumb().height();
}

QRectF ThinScrollBar::thumb() const {
    const double track = height() - 2 * kEnds;
    const double length =
        qMin(track, qMax(kLeastThumb, track * pageStep() / qMax(1, pageStep() + maximum())));
    const double top = maximum() > 0 ? (track - length) * value() / maximum() : 0;
    const double wide = isSliderDown() ? 1 : hoverShare(*this);
    return {width() - 7 - wide, kEnds + top, 4 + 2 * wide, length};
}

QColor ThinScrollBar::color() const {
    const ThumbColors& colors = place_ == Place::panel ? kPanelTheme.thumb : windowTheme(palette()).thumb;
    return isSliderDown() ? colors.dragged : blended(colors.rest, colors.hovered, hoverShare(*this));
}

void ThinScrollBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color());
    const QRectF shape = thumb();
    painter.drawRoundedRect(shape, shape.width() / 2, shape.width() / 2);
}

void ThinScrollBar::mousePressEvent(QMouseEvent* event) {
    const int ungrabbed = place_ == Place::panel ? kUngrabbed : 0;
    if (event->button() != Qt::LeftButton || event->position().x() >= width() - ungrabbed) {
        event->ignore();
        return;
    }
    const double y = event->position().y();
    if (y < thumb().top() || y > thumb().bottom()) {
        const SliderAction page = y < thumb().top() ? SliderPageStepSub : SliderPageStepAdd;
        triggerAction(page);
        setRepeatAction(page);
    } else {
        grabbedAt_ = y - thumb().top();
        setSliderDown(true);
        update();
    }
}

void ThinScrollBar::mouseMoveEvent(QMouseEvent* event) {
    if (isSliderDown() && travel() > 0)
        setValue(qRound((event->position().y() - grabbedAt_ - kEnds) / travel() * maximum()));
}

void ThinScrollBar::mouseReleaseEvent(QMouseEvent*) {
    setRepeatAction(SliderNoAction);
    setSliderDown(false);
    update();
}

} // namespace quillmoth
