#include "Quillmoth/Shell/Controls/WindowStyle.h"

#include "Foundation/Qt/Symbols.h"
#include "Foundation/Qt/Transition.h"
#include "Quillmoth/Shell/Looks/Lengths.h"
#include "Quillmoth/Shell/Looks/Motion.h"
#include "Quillmoth/Shell/Looks/Palette.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QPainter>
#include <QPainterPath>
#include <QPointer>
#include <QStyleOption>
#include <QWidget>

#include <algorithm>

namespace quillmoth {

namespace {

constexpr double kButtonRadius = 7;
constexpr double kFieldRadius = 6;
constexpr int kButtonPadding = 13;
constexpr int kPickerLeft = 12;
constexpr int kPickerRight = 9;
constexpr int kPickerGap = 18;
constexpr int kChevron = 13;
constexpr int kAlertIcon = 40;
// The line edit itself adds two pixels.
constexpr int kFieldPadding = 7;

/// A rounded rectangle of `fill` whose outermost pixel is `edge`.
void drawFrame(QPainter& painter, const QRect& rect, double radius, const QColor& fill, const QColor& edge) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(rect), radius, radius);
    QPainterPath outline;
    outline.addRoundedRect(QRectF(rect), radius, radius);
    outline.addRoundedRect(QRectF(rect).adjusted(1, 1, -1, -1), radius - 1, radius - 1);
    painter.setBrush(edge);
    painter.drawPath(outline);
    painter.restore();
}

void drawButton(QPainter& painter, const QStyleOption& option, const QWidget* widget) {
    const WindowTheme& theme = windowTheme(option.palette);
    const bool enabled = option.state & QStyle::State_Enabled;
    QColor fill = theme.button;
    if (enabled && (option.state & (QStyle::State_Sunken | QStyle::State_On)))
        fill = theme.buttonPressed;
    else if (enabled)
        fill = blended(theme.button, theme.buttonHover, widget != nullptr ? hoverShare(*widget) : 0);
    painter.save();
    if (!enabled)
        painter.setOpacity(painter.opacity() * kDisabledOpacity);
    const bool focused = option.state & QStyle::State_HasFocus;
    drawFrame(painter, option.rect, kButtonRadius, fill, focused ? theme.indigo : theme.buttonEdge);
    painter.restore();
}

void drawField(QPainter& painter, const QStyleOption& option) {
    const WindowTheme& theme = windowTheme(option.palette);
    const bool focused = option.state & QStyle::State_HasFocus;
    drawFrame(painter, option.rect, kFieldRadius, theme.field, focused ? theme.indigo : theme.fieldEdge);
    if (focused || theme.fieldBottom == theme.fieldEdge)
        return;
    const QRectF rect = option.rect;
    painter.fillRect(
        QRectF(rect.left() + kFieldRadius, rect.bottom() - 1, rect.width() - 2 * kFieldRadius, 1),
        theme.fieldBottom);
}

void drawPicker(QPainter& painter, const QStyleOptionComboBox& option, const QWidget* widget) {
    drawButton(painter, option, widget);
    const WindowTheme& theme = windowTheme(option.palette);
    const QRect rect = option.rect;
    drawSymbol(
        painter, QStringLiteral("chevron.down"),
        QPointF(rect.right() + 1 - kPickerRight - kChevron, rect.top() + (rect.height() - kChevron) / 2),
        kChevron, theme.text2);
}

void drawPickerText(QPainter& painter, const QStyleOptionComboBox& option) {
    const QRect place = option.rect.adjusted(kPickerLeft, 0, -(kPickerRight + kChevron + 4), 0);
    painter.setPen(option.palette.color(QPalette::ButtonText));
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter,
                     option.fontMetrics.elidedText(option.currentText, Qt::ElideRight, place.width()));
}

/// A triangle or a disk with its sign cut out.
QIcon alertIcon(bool isWarning, const QWidget& widget) {
    const double scale = widget.devicePixelRatioF();
    QPixmap pixmap(QSize(kAlertIcon, kAlertIcon) * scale);
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const WindowTheme& theme = windowTheme(widget.palette());
    const QColor color = isWarning ? theme.red : theme.indigo;
    const double middle = kAlertIcon / 2.0;
    painter.setBrush(color);
    painter.setPen(QPen(color, 6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    if (isWarning)
        painter.drawPolygon(
            QPolygonF({{middle, 6}, {kAlertIcon - 5.0, kAlertIcon - 7.0}, {5, kAlertIcon - 7.0}}));
    else
        painter.drawEllipse(QRectF(5, 5, kAlertIcon - 10, kAlertIcon - 10));
    painter.setPen(QPen(Qt::white, 3.5, Qt::SolidLine, Qt::RoundCap));
    const double top = isWarning ? 14 : 18;
    const double bottom = isWarning ? 22 : 28;
    painter.drawLine(QPointF(middle, top), QPointF(middle, bottom));
    painter.drawPoint(QPointF(middle, isWarning ? 29 : 11.5));
    return pixmap;
}

} // namespace

WindowStyle::WindowStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void WindowStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                const QWidget* widget) const {
    switch (element) {
    case PE_FrameFocusRect:
        return;
    case PE_PanelLineEdit:
    case PE_FrameLineEdit:
        drawField(*painter, *option);
        return;
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void WindowStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const {
    switch (element) {
    case CE_PushButtonBevel:
        drawButton(*painter, *option, widget);
        return;
    case CE_ComboBoxLabel:
        if (const auto* picker = qstyleoption_cast<const QStyleOptionComboBox*>(option))
            drawPickerText(*painter, *picker);
        return;
    default:
        QProxyStyle::drawControl(element, option, painter, widget);
    }
}

void WindowStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                     QPainter* painter, const QWidget* widget) const {
    const auto* picker = qstyleoption_cast<const QStyleOptionComboBox*>(option);
    if (control == CC_ComboBox && picker != nullptr)
        drawPicker(*painter, *picker, widget);
    else
        QProxyStyle::drawComplexControl(control, option, painter, widget);
}

QRect WindowStyle::subElementRect(SubElement element, const QStyleOption* option,
                                  const QWidget* widget) const {
    if (element == SE_LineEditContents)
        return option->rect.adjusted(kFieldPadding, 1, -kFieldPadding, -1);
    return QProxyStyle::subElementRect(element, option, widget);
}

QSize WindowStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                    const QWidget* widget) const {
    if (type == CT_PushButton) {
        const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
        const int width =
            button != nullptr ? option->fontMetrics.horizontalAdvance(button->text) : size.width();
        return {width + 2 * kButtonPadding, window::kControlHeight};
    }
    if (type == CT_LineEdit)
        return {size.width() + 2 * kFieldPadding, window::kControlHeight};
    if (type == CT_ComboBox)
        return {kPickerLeft + size.width() + kPickerGap + kChevron + kPickerRight, window::kControlHeight};
    return QProxyStyle::sizeFromContents(type, option, size, widget);
}

int WindowStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
    case PM_MessageBoxIconSize:
        return kAlertIcon;
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
        return 0;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

QIcon WindowStyle::standardIcon(StandardPixmap icon, const QStyleOption* option,
                                const QWidget* widget) const {
    if (widget == nullptr || (icon != SP_MessageBoxWarning && icon != SP_MessageBoxInformation))
        return QProxyStyle::standardIcon(icon, option, widget);
    return alertIcon(icon == SP_MessageBoxWarning, *widget);
}

void WindowStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    if (qobject_cast<QAbstractButton*>(widget) != nullptr || qobject_cast<QComboBox*>(widget) != nullptr)
        fadeOnHover(*widget);
}

void applyWindowStyle(QWidget* root) {
    static QPointer<WindowStyle> style;
    if (!style) {
        style = new WindowStyle;
        style->setParent(qApp);
    }
    root->setStyle(style);
    for (QWidget* child : root->findChildren<QWidget*>())
        child->setStyle(style);
}

} // namespace quillmoth
