#include "Quillmoth/Shell/Panel/PanelButton.h"

#include "Foundation/Qt/Transition.h"
#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Looks/Motion.h"
#include "Quillmoth/Shell/Looks/Palette.h"

#include <QFontMetrics>
#include <QPainter>

namespace quillmoth {

namespace {

constexpr int kButtonFont = 13;
constexpr int kSidePadding = 12;
constexpr double kButtonRadius = 6;
constexpr double kButtonRing = 2;

} // namespace

PanelButton::PanelButton(const QString& text, QWidget* parent) : QPushButton(text, parent) {
    setFont(textFont(kButtonFont));
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
    painter.setPen(ring ? QPen(kPanelTheme.accent, kButtonRing) : QPen(Qt::NoPen));
    const double inset = ring ? kButtonRing / 2 : 0;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kButtonRadius,
                            kButtonRadius);
    painter.setPen(isDown() ? kPanelTheme.buttonPressedText : kPanelTheme.text);
    painter.drawText(rect(), Qt::AlignCenter, text());
}

} // namespace quillmoth
