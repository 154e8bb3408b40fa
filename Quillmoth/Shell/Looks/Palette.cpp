#include "Quillmoth/Shell/Looks/Palette.h"

namespace quillmoth {

namespace {

QColor black(double alpha) {
    return QColor::fromRgbF(0, 0, 0, static_cast<float>(alpha));
}

QColor white(double alpha) {
    return QColor::fromRgbF(1, 1, 1, static_cast<float>(alpha));
}

QColor rgb(QRgb value, double alpha = 1) {
    QColor color = QColor::fromRgb(value);
    color.setAlphaF(static_cast<float>(alpha));
    return color;
}

QColor opaque(const QColor& color, const QColor& under, double opacity = 1) {
    const auto alpha = color.alphaF() * opacity;
    const auto mix = [alpha](double over, double below) {
        return static_cast<float>(over * alpha + below * (1 - alpha));
    };
    return QColor::fromRgbF(mix(color.redF(), under.redF()), mix(color.greenF(), under.greenF()),
                            mix(color.blueF(), under.blueF()));
}

ThumbColors thumbOf(QRgb text) {
    return {.rest = rgb(text, 0.28), .hovered = rgb(text, 0.46), .dragged = rgb(text, 0.60)};
}

WindowTheme makeLight() {
    return {.base = rgb(0xF6F6F8),
            .side = rgb(0xECECF0),
            .card = rgb(0xFFFFFF),
            .text = rgb(0x1D1D22),
            .text2 = rgb(0x65656F),
            .text3 = rgb(0x8C8C96),
            .divider = black(0.09),
            .field = rgb(0xFFFFFF),
            .fieldEdge = black(0.17),
            .fieldBottom = black(0.26),
            .button = rgb(0xFFFFFF),
            .buttonEdge = black(0.15),
            .buttonHover = rgb(0xFAFAFC),
            .buttonPressed = rgb(0xE6E6EB),
            .segment = black(0.065),
            .segmentOn = rgb(0xFFFFFF),
            .rowSelected = rgb(0x5753DE, 0.14),
            .rowHovered = black(0.045),
            .indigo = rgb(0x5753DE),
            .indigoText = rgb(0x4F4BD8),
            .ring = rgb(0x5753DE, 0.38),
            .switchOff = black(0.16),
            .red = rgb(0xC4332B),
            .green = rgb(0x1E7B3A),
            .link = rgb(0x2563C9),
            .thumb = thumbOf(0x1D1D22)};
}

WindowTheme makeDark() {
    return {.base = rgb(0x1F1F24),
            .side = rgb(0x26262C),
            .card = rgb(0x2A2A30),
            .text = rgb(0xF2F2F7),
            .text2 = rgb(0xA6A6B2),
            .text3 = rgb(0x8C8C98),
            .divider = white(0.10),
            .field = white(0.06),
            .fieldEdge = white(0.16),
            .fieldBottom = white(0.16),
            .button = white(0.10),
            .buttonEdge = white(0.07),
            .buttonHover = white(0.15),
            .buttonPressed = white(0.06),
            .segment = white(0.07),
            .segmentOn = white(0.16),
            .rowSelected = rgb(0x908EFF, 0.24),
            .rowHovered = white(0.055),
            .indigo = rgb(0x625FE8),
            .indigoText = rgb(0x908EFF),
            .ring = rgb(0x908EFF, 0.50),
            .switchOff = white(0.20),
            .red = rgb(0xFF6B63),
            .green = rgb(0x57C97A),
            .link = rgb(0x6CB4FF),
            .thumb = thumbOf(0xF2F2F7)};
}

QPalette makePalette(const WindowTheme& theme) {
    QPalette palette;
    const auto set = [&](QPalette::ColorRole role, const QColor& color) {
        palette.setColor(role, opaque(color, theme.base));
    };
    set(QPalette::Window, theme.base);
    set(QPalette::Base, theme.field);
    set(QPalette::AlternateBase, theme.side);
    set(QPalette::Button, theme.button);
    set(QPalette::Mid, theme.divider);
    set(QPalette::PlaceholderText, theme.text2);
    set(QPalette::Highlight, theme.indigo);
    set(QPalette::HighlightedText, Qt::white);
    set(QPalette::Link, theme.link);
    set(QPalette::LinkVisited, theme.link);
    set(QPalette::ToolTipBase, theme.card);
    set(QPalette::ToolTipText, theme.text);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        set(role, theme.text);
        palette.setColor(QPalette::Disabled, role, opaque(theme.text, theme.base, kDisabledOpacity));
    }
    return palette;
}

} // namespace

const WindowTheme& windowTheme(bool dark) {
    static const WindowTheme lightTheme = makeLight();
    static const WindowTheme darkTheme = makeDark();
    return dark ? darkTheme : lightTheme;
}

const WindowTheme& windowTheme(const QPalette& palette) {
    return windowTheme(palette.color(QPalette::Window).lightness() < 128);
}

QPalette windowPalette(bool dark) {
    return makePalette(windowTheme(dark));
}

QPalette menuPalette(const QPalette& window) {
    const WindowTheme& theme = windowTheme(window);
    QPalette menu = windowPalette(&theme == &windowTheme(true));
    menu.setColor(QPalette::Window, theme.card);
    menu.setColor(QPalette::Base, theme.card);
    return menu;
}

} // namespace quillmoth
