#pragma once

#include <QColor>
#include <QFont>

namespace quillmoth {

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
    QColor error{0xFF, 0x6B, 0x6B};
    QColor selection{0x26, 0x51, 0x7E};
    QColor field{0x2A, 0x2A, 0x2E};
    QColor fieldEdge{0x45, 0x45, 0x49};
    QColor fieldEdgeHovered{0x57, 0x57, 0x5B};
    QColor button{0x33, 0x33, 0x37};
    QColor buttonHovered{0x40, 0x40, 0x45};
    QColor buttonPressed{0x2A, 0x2A, 0x2E};
    QColor buttonPressedText{0xC8, 0xC8, 0xD0};
    QColor thumb{0x5C, 0x5C, 0x5F};
    QColor thumbHovered{0x84, 0x84, 0x87};
    QColor thumbDragged{0xA4, 0xA4, 0xA6};
    QColor switchOff{0x45, 0x45, 0x49};
    QColor switchIdle{0x6B, 0x6B, 0x76};
    QColor switchKnob{0xD8, 0xD8, 0xE0};
    QColor spinnerTrack{0x47, 0x47, 0x4B};
};

inline constexpr PanelTheme kPanelTheme;

/// Lengths of the panel, in device-independent pixels.
namespace panel {

inline constexpr int kNaturalWidth = 612;
inline constexpr int kNaturalListHeight = 320;
inline constexpr int kLeastListHeight = 200;
inline constexpr int kPadding = 10;
inline constexpr int kCornerRadius = 10;
inline constexpr int kCommandLine = 24;
inline constexpr int kCommandRow = 34;
inline constexpr int kLargestCommandArea = 300;
inline constexpr int kGapAboveDivider = 6;
inline constexpr int kGapBelowDivider = 8;
inline constexpr int kDivider = 1;
inline constexpr int kBottomBar = 20;
inline constexpr int kListEnds = 6;
inline constexpr int kRowPadding = 10;
inline constexpr int kRowGap = 2;
inline constexpr int kRowRadius = 10;
inline constexpr int kMessagePadding = 30;
inline constexpr int kSpinner = 17;
inline constexpr int kSpinnerInset = 27;
inline constexpr int kIcon = 14;

/// All that is above and below the command area and the list area.
inline constexpr int kFixedHeight =
    2 * kPadding + kGapAboveDivider + 2 * kDivider + kGapBelowDivider + kBottomBar;

} // namespace panel

/// The desktop's font for text at a size in pixels, colour emoji before other fallbacks.
[[nodiscard]] QFont panelFont(double pixelSize, QFont::Weight weight = QFont::Normal);

/// The same with the colour emoji first, for text that is one.
[[nodiscard]] QFont emojiFont(double pixelSize);

/// Whether `text` starts with an emoji or another pictograph, rather than with a letter, digit or sign.
[[nodiscard]] bool startsWithPictograph(const QString& text);

/// The height of a line of running text at `pixelSize`: the natural one and 0.15 em.
[[nodiscard]] int textLineHeight(double pixelSize);

} // namespace quillmoth
