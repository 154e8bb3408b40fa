#include "Quillmoth/Shell/Controls/Switch.h"

#include "Quillmoth/Shell/Looks/EmojiText.h"
#include "Quillmoth/Shell/Looks/Motion.h"
#include "Quillmoth/Shell/Looks/Palette.h"

#include <QPainter>
#include <QtMath>

namespace quillmoth {

namespace {

constexpr QSize kTrack(34, 20);
constexpr double kKnob = 16;
constexpr double kKnobInset = 2;
constexpr int kSwitchGap = 10;

void drawTrack(QPainter& painter, const QRectF& track, double share, const WindowTheme& theme) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(blended(theme.switchOff, theme.indigo, share));
    painter.drawRoundedRect(track, track.height() / 2, track.height() / 2);
    const double travel = track.width() - kKnob - 2 * kKnobInset;
    const QRectF knob(track.left() + kKnobInset + travel * share, track.top() + kKnobInset, kKnob, kKnob);
    painter.setBrush(QColor(0, 0, 0, 40));
    painter.drawEllipse(knob.translated(0, 0.75));
    painter.setBrush(Qt::white);
    painter.drawEllipse(knob);
}

} // namespace

Switch::Switch(const QString& text) : QCheckBox(text) {
    setAccessibleName(text);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    // Not the click: assistive technology switches without one.
    connect(this, &QCheckBox::toggled, this, [this](bool on) {
        slide_.moveTo(on ? 1 : 0, motion::kSwitch);
        if (!isShowing_ && onChange)
            onChange(on);
    });
}

void Switch::setOn(bool on) {
    isShowing_ = true;
    setChecked(on);
    isShowing_ = false;
}

QSize Switch::sizeHint() const {
    return {kTrack.width() + kSwitchGap + qCeil(emojiTextWidth(font(), text())), kTrack.height()};
}

void Switch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.save();
    const double top = (height() - kTrack.height()) / 2.0;
    drawTrack(painter, QRectF(QPointF(0, top), kTrack), slide_.value(), windowTheme(palette()));
    painter.restore();
    painter.setPen(palette().color(QPalette::WindowText));
    drawEmojiText(painter, rect().adjusted(kTrack.width() + kSwitchGap, 0, 0, 0), Qt::AlignLeft, text());
}

} // namespace quillmoth
