#include "Quillmoth/Shell/Looks/SlimScrollBar.h"

#include "Quillmoth/Shell/Looks/Palette.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>

namespace quillmoth {

namespace {

constexpr double kRestWidth = 4;
constexpr double kHoverWidth = 6;
constexpr double kRestOpacity = 0.28;
constexpr double kHoverOpacity = 0.46;
constexpr double kDraggedOpacity = 0.60;

} // namespace

SlimScrollBar::SlimScrollBar(QWidget* parent) : QScrollBar(Qt::Vertical, parent) {
    setAttribute(Qt::WA_Hover);
    setAttribute(Qt::WA_OpaquePaintEvent, false);
}

QSize SlimScrollBar::sizeHint() const {
    return {kWidth, QScrollBar::sizeHint().height()};
}

void SlimScrollBar::paintEvent(QPaintEvent* /*event*/) {
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRectF slider =
        style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
    const bool isWide = underMouse() || isSliderDown();
    const double thickness = isWide ? kHoverWidth : kRestWidth;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isSliderDown() ? kDraggedOpacity : isWide ? kHoverOpacity : kRestOpacity);
    painter.setPen(Qt::NoPen);
    painter.setBrush(windowTheme(palette()).text);
    painter.drawRoundedRect(QRectF((width() - thickness) / 2, slider.y(), thickness, slider.height()),
                            thickness / 2, thickness / 2);
}

} // namespace quillmoth
