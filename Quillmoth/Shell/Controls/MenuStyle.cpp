#include "Quillmoth/Shell/Controls/MenuStyle.h"

#include "Foundation/Qt/Transition.h"
#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Looks/Lengths.h"
#include "Quillmoth/Shell/Looks/Palette.h"

#include <QApplication>
#include <QMenu>
#include <QPainter>
#include <QPainterPath>
#include <QPointer>
#include <QStyleOptionMenuItem>

#include <algorithm>

namespace quillmoth {

namespace {

constexpr int kPadding = 5;
constexpr int kSeparatorHeight = 11;
constexpr int kItemInset = 10;
constexpr int kKeyGap = 24;
constexpr int kFontSize = 13;
constexpr double kItemRadius = 6;
constexpr double kCardRadius = 9;
/// Of the keys in the item under the pointer.
constexpr double kMarkedKeys = 0.8;

/// The text of an item and its keys, which a tab parts.
struct ItemTexts {
    explicit ItemTexts(const QString& both) : name(both.section(u'\t', 0, 0)), keys(both.section(u'\t', 1)) {}

    QString name;
    QString keys;
};

void drawSeparator(QPainter& painter, const QRect& rect, const WindowTheme& theme) {
    painter.fillRect(rect.left() + kItemInset, rect.center().y(), rect.width() - 2 * kItemInset, 1,
                     theme.divider);
}

void drawItem(QPainter& painter, const QStyleOptionMenuItem& item, const WindowTheme& theme) {
    const bool isEnabled = item.state & QStyle::State_Enabled;
    const bool isMarked = isEnabled && (item.state & QStyle::State_Selected);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled ? 1 : kDisabledOpacity);
    if (isMarked) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme.indigo);
        painter.drawRoundedRect(item.rect, kItemRadius, kItemRadius);
    }
    const ItemTexts texts(item.text);
    const QRect inside = item.rect.adjusted(kItemInset, 0, -kItemInset, 0);
    const auto draw = [&](const QString& text, const QColor& color, Qt::Alignment side) {
        painter.setPen(color);
        const auto alignment = QStyle::visualAlignment(item.direction, side | Qt::AlignVCenter);
        painter.drawText(
            inside, static_cast<int>(alignment.toInt()) | Qt::TextSingleLine | Qt::TextHideMnemonic, text);
    };
    painter.setFont(item.font);
    draw(texts.name, isMarked ? QColor(Qt::white) : theme.text, Qt::AlignLeft);
    const QColor keys = isMarked ? blended(theme.indigo, QColor(Qt::white), kMarkedKeys) : theme.text2;
    draw(texts.keys, keys, Qt::AlignRight);
}

QSize itemSize(const QStyleOptionMenuItem& item) {
    if (item.menuItemType == QStyleOptionMenuItem::Separator)
        return {2 * kItemInset, kSeparatorHeight};
    const ItemTexts texts(item.text);
    const QFontMetrics metrics(item.font);
    int width = metrics.size(Qt::TextSingleLine | Qt::TextHideMnemonic, texts.name).width() + 2 * kItemInset;
    if (!texts.keys.isEmpty())
        width += kKeyGap + metrics.horizontalAdvance(texts.keys);
    return {width, window::kRowHeight};
}

} // namespace

MenuStyle::MenuStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void MenuStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const {
    if (element == PE_FrameMenu)
        return;
    if (element != PE_PanelMenu)
        return QProxyStyle::drawPrimitive(element, option, painter, widget);
    const WindowTheme& theme = windowTheme(option->palette);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->fillRect(option->rect, theme.card);
    painter->setPen(theme.buttonEdge);
    painter->drawRoundedRect(QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5), kCardRadius, kCardRadius);
    painter->restore();
}

void MenuStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
    if (element == CE_MenuEmptyArea)
        return;
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (element != CE_MenuItem || item == nullptr)
        return QProxyStyle::drawControl(element, option, painter, widget);
    painter->save();
    if (item->menuItemType == QStyleOptionMenuItem::Separator)
        drawSeparator(*painter, item->rect, windowTheme(item->palette));
    else
        drawItem(*painter, *item, windowTheme(item->palette));
    painter->restore();
}

QSize MenuStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                  const QWidget* widget) const {
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (type != CT_MenuItem || item == nullptr)
        return QProxyStyle::sizeFromContents(type, option, size, widget);
    return itemSize(*item);
}

int MenuStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
    case PM_MenuHMargin:
    case PM_MenuVMargin:
        return kPadding;
    case PM_MenuPanelWidth:
        return 0;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int MenuStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                         QStyleHintReturn* data) const {
    auto* mask = qstyleoption_cast<QStyleHintReturnMask*>(data);
    if (hint != SH_Menu_Mask || mask == nullptr || option == nullptr)
        return QProxyStyle::styleHint(hint, option, widget, data);
    QPainterPath card;
    card.addRoundedRect(QRectF(option->rect), kCardRadius, kCardRadius);
    mask->region = QRegion(card.toFillPolygon().toPolygon());
    return 1;
}

void styleMenu(QMenu& menu, const QPalette& window) {
    static QPointer<MenuStyle> style;
    if (!style) {
        style = new MenuStyle;
        style->setParent(qApp);
    }
    menu.setStyle(style);
    menu.setPalette(menuPalette(window));
    menu.setFont(textFont(kFontSize));
}

} // namespace quillmoth
