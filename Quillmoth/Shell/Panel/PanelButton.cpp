#include "Quillmoth/Shell/Panel/PanelButton.h"

#include "Foundation/Qt/Transition.h"
#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Looks/Motion.h"
#include "Quillmoth/Shell/Looks/Palette.h"

#include <QFontMetrics>
#include <QPainter>

namespace quillmoth {

namespace {

constexpr int kFontSize = 13;
constexpr int kSidePadding = 12;
constexpr double kRadius = 6;
constexpr double kRing = 2;

} // namespace

PanelButton::PanelButton(const QString& text, QWidget* parent) : QPushButton(text, parent) {
    setFont(textFont(kFontSize));
    // A click is not to take the keyboard from the field.
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::ArrowCursor);
    setAutoDefault(true);
    setAccessibleName(text);
    fadeOnHover(*this);
}

QSize PanelButton::sizeHint() const {
    return {QFontMetrics(font()).horizontalAdvance(text()) + 2 * kSidePadding, kHeight};
}

void PanelButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor fill = isDown() ? kPanelTheme.buttonPressed
                                 : blended(kPanelTheme.button, kPanelTheme.buttonHovered, hoverShare(*this));
    painter.setBrush(fill);
    const bool ring = hasFocus();
    painter.setPen(ring ? QPen(kPanelTheme.accent, kRing) : QPen(Qt::NoPen));
    const double inset = ring ? kRing / 2 : 0;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kRadius, kRadius);
    painter.setPen(isDown() ? kPanelTheme.buttonPressedText : kPanelTheme.text);
    painter.drawText(rect(), Qt::AlignCenter, text());
}

} // namespace quillmoth
