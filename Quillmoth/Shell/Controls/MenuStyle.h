#pragma once

#include <QProxyStyle>

class QMenu;

namespace quillmoth {

/// How menus look: a card with rounded corners, items with the keys at their end. Colours come from the
/// palette of the menu.
class MenuStyle final : public QProxyStyle {
public:
    MenuStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget = nullptr) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget = nullptr) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget = nullptr) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option = nullptr,
                    const QWidget* widget = nullptr) const override;
    int styleHint(StyleHint hint, const QStyleOption* option = nullptr, const QWidget* widget = nullptr,
                  QStyleHintReturn* data = nullptr) const override;
};

/// Gives the menu of a window with the palette `window` the style, its palette and its font.
void styleMenu(QMenu& menu, const QPalette& window);

} // namespace quillmoth
