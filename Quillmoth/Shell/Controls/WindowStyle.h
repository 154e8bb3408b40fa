#pragma once

#include <QProxyStyle>

namespace quillmoth {

/// How buttons, fields, pickers and the focus ring look in the program's windows; all else is Fusion's.
/// Colours come from the palette of the widget that is painted.
class WindowStyle final : public QProxyStyle {
public:
    WindowStyle();

    using QProxyStyle::polish;
    void polish(QWidget* widget) override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget = nullptr) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget = nullptr) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget = nullptr) const override;
    QRect subElementRect(SubElement element, const QStyleOption* option,
                         const QWidget* widget = nullptr) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget = nullptr) const override;
    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option = nullptr,
                       const QWidget* widget = nullptr) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option = nullptr,
                    const QWidget* widget = nullptr) const override;
};

/// Gives `root` and all that it holds now the style, which lives as long as the application object.
void applyWindowStyle(QWidget* root);

} // namespace quillmoth
