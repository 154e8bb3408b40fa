#pragma once

#include <QColor>
#include <QPalette>

namespace quillmoth {

/// Of the thumb of a scroll bar.
struct ThumbColors {
    QColor rest, hovered, dragged;
};

/// The colours of the panel, made opaque over its base. The panel is dark on every desktop.
struct PanelTheme {
    QColor base{0x1C, 0x1C, 0x21};
    QColor edge{0x3A, 0x3A, 0x3E};
    QColor edgeTop{0x49, 0x49, 0x4D};
    QColor edgeIdle{0x2E, 0x2E, 0x33};
    QColor divider{0x35, 0x35, 0x39};
    QColor white{0xFF, 0xFF, 0xFF};
    QColor text{0xF2, 0xF2, 0xF7};
    QColor gray{0x86, 0x86, 0x92};
    QColor barHovered{0xD2, 0xD2, 0xDA};
    QColor rowSelected{0x66, 0x66, 0x70};
    QColor rowHovered{0x3C, 0x3C, 0x43};
    QColor accent{0x33, 0x9A, 0xFF};
    QColor link{0x6C, 0xB4, 0xFF};
    QColor error{0xFF, 0x6B, 0x6B};
    QColor done{0x57, 0xC9, 0x7A};
    QColor selection{0x26, 0x51, 0x7E};
    QColor field{0x2A, 0x2A, 0x2E};
    QColor fieldEdge{0x45, 0x45, 0x49};
    QColor fieldEdgeHovered{0x57, 0x57, 0x5B};
    QColor button{0x33, 0x33, 0x37};
    QColor buttonHovered{0x40, 0x40, 0x45};
    QColor buttonPressed{0x2A, 0x2A, 0x2E};
    QColor buttonPressedText{0xC8, 0xC8, 0xD0};
    ThumbColors thumb{{0x5C, 0x5C, 0x5F}, {0x84, 0x84, 0x87}, {0xA4, 0xA4, 0xA6}};
    QColor switchOff{0x45, 0x45, 0x49};
    QColor switchIdle{0x6B, 0x6B, 0x76};
    QColor switchKnob{0xD8, 0xD8, 0xE0};
    QColor spinnerTrack{0x47, 0x47, 0x4B};
};

inline constexpr PanelTheme kPanelTheme;

/// The colours of the program's ordinary windows, in light and in dark. Those of segments and rows lie over
/// that of the sidebar.
struct WindowTheme {
    QColor base, side, card, text, text2, text3, divider, field, fieldEdge, fieldBottom, button, buttonEdge,
        buttonHover, buttonPressed, segment, segmentOn, rowSelected, rowHovered, indigo, indigoText, ring,
        switchOff, red, green, link;
    ThumbColors thumb;
};

[[nodiscard]] const WindowTheme& windowTheme(bool dark);

/// The theme that a widget's palette belongs to.
[[nodiscard]] const WindowTheme& windowTheme(const QPalette& palette);

[[nodiscard]] QPalette windowPalette(bool dark);

/// For menus and pop-ups of a window with the palette `window`, whose palettes are their own.
[[nodiscard]] QPalette menuPalette(const QPalette& window);

/// Of what is disabled in a window.
inline constexpr double kDisabledOpacity = 0.42;

} // namespace quillmoth
