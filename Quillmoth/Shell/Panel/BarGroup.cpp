#include "Quillmoth/Shell/Panel/BarGroup.h"

#include "Foundation/Qt/Transition.h"
#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Looks/Lengths.h"
#include "Quillmoth/Shell/Looks/Motion.h"
#include "Quillmoth/Shell/Looks/Palette.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QtMath>

namespace quillmoth {

namespace {

constexpr int kBarFont = 12;
constexpr int kGroupPadding = 1;
constexpr int kLabelGap = 4;
constexpr int kSymbolGap = 2;
constexpr int kSwitchWidth = 22;
constexpr int kSwitchHeight = 13;
constexpr double kKnob = 10;
constexpr double kKnobInset = 1.5;

int barTextWidth(const QString& text, const QFont& font) {
    return qCeil(QFontMetricsF(font).horizontalAdvance(text));
}

void drawFocusLine(QPainter& painter, const QRect& rect) {
    painter.fillRect(QRect(rect.left() + 1, rect.bottom(), rect.width() - 2, 1), kPanelTheme.accent);
}

} // namespace

BarGroup::BarGroup(Description description, QWidget* parent)
    : QPushButton(parent), description_(std::move(description)) {
    setFont(textFont(kBarFont));
    // A click is not to take the keyboard from the field.
    setFocusPolicy(Qt::TabFocus);
    setAutoDefault(true);
    setCursor(Qt::ArrowCursor);
    fadeOnHover(*this);
}

void BarGroup::setLabel(const QString& label) {
    if (label == text())
        return;
    setText(label);
    setAccessibleName(QStringLiteral("%1, %2").arg(label, description_.keys));
    update();
}

int BarGroup::labelWidth() const {
    return barTextWidth(text(), font());
}

int BarGroup::symbolsWidth() const {
    const int count = static_cast<int>(description_.symbols.size());
    return count * panel::kIcon + (count - 1) * kSymbolGap;
}

QSize BarGroup::sizeHint() const {
    return {labelWidth() + kLabelGap + symbolsWidth() + 2 * kGroupPadding, panel::kBottomBar};
}

QSize BarGroup::minimumSizeHint() const {
    return {symbolsWidth() + 2 * kGroupPadding, panel::kBottomBar};
}

void BarGroup::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const double hovered = isDown() ? 0 : hoverShare(*this);
    const bool hasLabel = width() >= sizeHint().width();
    int x = kGroupPadding;
    const int labelLeft = x + (description_.symbolsFirst ? symbolsWidth() + kLabelGap : 0);
    painter.setPen(blended(kPanelTheme.gray, kPanelTheme.barHovered, hovered));
    if (hasLabel)
        painter.drawText(QRect(labelLeft, 0, labelWidth() + 1, height()), Qt::AlignVCenter | Qt::AlignLeft,
                         text());
    if (hasLabel && !description_.symbolsFirst)
        x += labelWidth() + kLabelGap;
    const int top = (height() - panel::kIcon) / 2;
    for (const QString& symbol : description_.symbols) {
        drawSymbol(painter, symbol, QPointF(x, top), panel::kIcon, kPanelTheme.gray);
        if (hovered > 0) {
            painter.setOpacity(hovered);
            drawSymbol(painter, symbol, QPointF(x, top), panel::kIcon, kPanelTheme.barHovered);
            painter.setOpacity(1);
        }
        x += panel::kIcon + kSymbolGap;
    }
    if (hasFocus())
        drawFocusLine(painter, rect());
}

BarSwitch::BarSwitch(const QString& label, const QString& keys, QWidget* parent) : QCheckBox(label, parent) {
    setFont(textFont(kBarFont));
    setFocusPolicy(Qt::TabFocus);
    setAccessibleName(QStringLiteral("%1, %2").arg(label, keys));
    setCursor(Qt::ArrowCursor);
    fadeOnHover(*this);
}

void BarSwitch::setOn(bool on) {
    setChecked(on);
    knob_.moveTo(on ? 1 : 0, motion::kSwitch);
}

void BarSwitch::setActive(bool active) {
    active_ = active;
    update();
}

int BarSwitch::labelWidth() const {
    return barTextWidth(text(), font());
}

QSize BarSwitch::sizeHint() const {
    return {labelWidth() + kLabelGap + kSwitchWidth + 2 * kGroupPadding, panel::kBottomBar};
}

bool BarSwitch::hitButton(const QPoint& position) const {
    return rect().contains(position);
}

void BarSwitch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(blended(kPanelTheme.gray, kPanelTheme.barHovered, hoverShare(*this)));
    painter.drawText(QRect(kGroupPadding, 0, labelWidth() + 1, height()), Qt::AlignVCenter | Qt::AlignLeft,
                     text());

    const double on = knob_.value();
    const QRectF track(kGroupPadding + labelWidth() + kLabelGap, qFloor((height() - kSwitchHeight) / 2.0),
                       kSwitchWidth, kSwitchHeight);
    const QColor& onColor = active_ ? kPanelTheme.accent : kPanelTheme.switchIdle;
    painter.setPen(Qt::NoPen);
    if (hasFocus()) {
        painter.setBrush(kPanelTheme.accent);
        painter.drawRoundedRect(track.adjusted(-3, -3, 3, 3), kSwitchHeight, kSwitchHeight);
        painter.setBrush(kPanelTheme.base);
        painter.drawRoundedRect(track.adjusted(-1, -1, 1, 1), kSwitchHeight / 2.0 + 1,
                                kSwitchHeight / 2.0 + 1);
    }
    painter.setBrush(blended(kPanelTheme.switchOff, onColor, on));
    painter.drawRoundedRect(track, kSwitchHeight / 2.0, kSwitchHeight / 2.0);
    painter.setBrush(blended(kPanelTheme.switchKnob, kPanelTheme.white, std::max(on, hoverShare(*this))));
    const double travel = kSwitchWidth - kKnob - 2 * kKnobInset;
    painter.drawEllipse(
        QRectF(track.left() + kKnobInset + on * travel, track.top() + kKnobInset, kKnob, kKnob));
}

} // namespace quillmoth
