#include "Quillmoth/Shell/Editor/SegmentButton.h"

#include "Foundation/Qt/Symbols.h"
#include "Foundation/Qt/Transition.h"
#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Looks/Motion.h"
#include "Quillmoth/Shell/Looks/Palette.h"

#include <QHBoxLayout>
#include <QPainter>

namespace quillmoth {

namespace {

constexpr int kSegmentHeight = 26;
constexpr int kSegmentSymbol = 14;
constexpr int kSegmentGap = 6;
constexpr int kSegmentPadding = 8;
constexpr double kSegmentRadius = 6;
constexpr int kBarPadding = 2;
constexpr double kBarRadius = 8;

} // namespace

SegmentButton::SegmentButton(const QString& text, const QString& symbol)
    : QRadioButton(text), symbol_(symbol) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize SegmentButton::sizeHint() const {
    return {kSegmentSymbol + kSegmentGap + fontMetrics().horizontalAdvance(text()) + 2 * kSegmentPadding,
            kSegmentHeight};
}

void SegmentButton::paintEvent(QPaintEvent* /*event*/) {
    const WindowTheme& theme = windowTheme(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isChecked()) {
        painter.setPen(theme.divider);
        painter.setBrush(windowTheme(palette()).segmentOn);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kSegmentRadius,
                                kSegmentRadius);
    }
    QFont textFont = font();
    textFont.setWeight(isChecked() ? QFont::Medium : QFont::Normal);
    painter.setFont(textFont);
    const QColor color = isChecked() ? theme.text : blended(theme.text2, theme.text, hoverShare(*this));
    const int textWidth = QFontMetrics(textFont).horizontalAdvance(text());
    const int left = (width() - kSegmentSymbol - kSegmentGap - textWidth) / 2;
    drawSymbol(painter, symbol_, QPointF(left, (height() - kSegmentSymbol) / 2), kSegmentSymbol, color);
    painter.setPen(color);
    painter.drawText(QRect(left + kSegmentSymbol + kSegmentGap, 0, width(), height()),
                     Qt::AlignLeft | Qt::AlignVCenter, text());
}

bool SegmentButton::hitButton(const QPoint& position) const {
    return rect().contains(position);
}

SegmentBar::SegmentBar() {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(kBarPadding, kBarPadding, kBarPadding, kBarPadding);
    layout->setSpacing(0);
}

void SegmentBar::addSegment(SegmentButton* button) {
    layout()->addWidget(button);
}

void SegmentBar::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(windowTheme(palette()).segment);
    painter.drawRoundedRect(rect(), kBarRadius, kBarRadius);
}

} // namespace quillmoth
