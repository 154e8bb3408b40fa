#include "Quillmoth/Shell/Controls/Buttons.h"

#include "Foundation/Qt/Symbols.h"
#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Looks/Motion.h"
#include "Quillmoth/Shell/Looks/Palette.h"

#include <QPainter>

namespace quillmoth {

namespace {

constexpr double kPressedScale = 0.95;
constexpr double kContinueRadius = 8;

} // namespace

LinkButton::LinkButton(const QString& text) : QPushButton(text) {
    setAccessibleName(text);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize LinkButton::sizeHint() const {
    return {fontMetrics().horizontalAdvance(text()) + 1, fontMetrics().height() + 2};
}

void LinkButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QFont underlined = font();
    underlined.setUnderline(true);
    painter.setFont(underlined);
    painter.setPen(windowTheme(palette()).link);
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter, text());
}

SymbolButton::SymbolButton(const QString& symbol, int symbolSize) : symbol_(symbol), symbolSize_(symbolSize) {
    setFixedSize(symbolSize + 6, symbolSize + 6);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::ArrowCursor);
}

void SymbolButton::setSymbol(const QString& symbol) {
    symbol_ = symbol;
    update();
}

void SymbolButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const WindowTheme& theme = windowTheme(palette());
    const bool strong = underMouse() || hasFocus();
    drawSymbol(painter, symbol_, QPointF((width() - symbolSize_) / 2, (height() - symbolSize_) / 2),
               symbolSize_, strong ? theme.text2 : theme.text3);
}

RoundedRectangleButtonStyle::RoundedRectangleButtonStyle(const QString& text, Fill fill)
    : QPushButton(text), fill_(fill) {
    setFixedHeight(44);
    setFont(textFont(15, QFont::Medium));
    connect(this, &QPushButton::pressed, this, [this] { scale_.moveTo(kPressedScale, motion::kPress); });
    connect(this, &QPushButton::released, this, [this] { scale_.moveTo(1, motion::kRelease); });
}

void RoundedRectangleButtonStyle::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF centre = QRectF(rect()).center();
    const double scale = scale_.value();
    painter.translate(centre);
    painter.scale(scale, scale);
    painter.translate(-centre);
    const WindowTheme& theme = windowTheme(palette());
    const bool isQuiet = fill_ == Fill::quiet;
    painter.setPen(isQuiet ? QPen(theme.buttonEdge) : QPen(Qt::NoPen));
    painter.setBrush(isQuiet ? theme.button : theme.indigo);
    const double inset = isQuiet ? 0.5 : 0;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kContinueRadius,
                            kContinueRadius);
    painter.setPen(isQuiet ? theme.text : QColor(Qt::white));
    painter.drawText(rect(), Qt::AlignCenter, text());
}

} // namespace quillmoth
