#include "Quillmoth/Shell/Editor/EditorStrip.h"

#include "Foundation/Qt/Symbols.h"
#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Looks/Motion.h"
#include "Quillmoth/Shell/Looks/Palette.h"

#include <QPainter>

namespace quillmoth {

namespace {

constexpr int kStripHeight = 46;
constexpr int kTitleSize = 14;
// More than a window shows; measuring a longer text would only take time.
constexpr int kLongestTitle = 2000;
constexpr QSize kButton{30, 28};
constexpr int kButtonSymbol = 18;
constexpr double kButtonRadius = 6;
constexpr int kEmptySymbol = 48;

} // namespace

ElidedTitle::ElidedTitle() {
    setFont(textFont(kTitleSize, QFont::DemiBold));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void ElidedTitle::setText(const QString& text) {
    text_ = text.left(kLongestTitle).simplified();
    setAccessibleName(text_);
    update();
}

void ElidedTitle::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(text_, Qt::ElideRight, width()));
}

StripButton::StripButton(const QString& symbol) : symbol_(symbol) {
    setFixedSize(kButton);
    setFocusPolicy(Qt::TabFocus);
}

void StripButton::paintEvent(QPaintEvent* /*event*/) {
    const WindowTheme& theme = windowTheme(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isDown() ? theme.buttonPressed : theme.buttonHover);
    painter.setOpacity(isDown() ? 1 : hoverShare(*this));
    painter.drawRoundedRect(rect(), kButtonRadius, kButtonRadius);
    painter.setOpacity(1);
    if (!symbol_.isEmpty())
        drawSymbol(painter, symbol_, QPointF((width() - kButtonSymbol) / 2, (height() - kButtonSymbol) / 2),
                   kButtonSymbol, theme.text2);
}

void EmptyDetail::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    drawSymbol(painter, "quillmoth-symbolic",
               QPointF((width() - kEmptySymbol) / 2, (height() - kEmptySymbol) / 2), kEmptySymbol,
               windowTheme(palette()).text3);
}

StripGround::StripGround() {
    setFixedHeight(kStripHeight);
}

void StripGround::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(QRect(0, height() - 1, width(), 1), windowTheme(palette()).divider);
}

} // namespace quillmoth
