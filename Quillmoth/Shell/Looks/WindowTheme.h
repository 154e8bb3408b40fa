#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

namespace quillmoth {

class SymbolCache;

/// The colours of the program's ordinary windows.
struct WindowTheme {
    QColor base, side, card, text, text2, text3, divider, field, fieldEdge, fieldBottom, button, buttonEdge,
        buttonHover, buttonPressed, indigo, indigoPressed, indigoText, ring, switchOff, red, green, link;
};

[[nodiscard]] const WindowTheme& windowTheme(bool dark);

/// The theme that a widget's palette belongs to.
[[nodiscard]] const WindowTheme& windowTheme(const QPalette& palette);

[[nodiscard]] QPalette windowPalette(bool dark);

/// For menus and pop-ups of a window with the palette `window`, whose palettes are their own.
[[nodiscard]] QPalette menuPalette(const QPalette& window);

/// `share` of the way from one colour to the other, from 0 to 1.
[[nodiscard]] QColor mixedColor(const QColor& from, const QColor& to, double share);

/// The desktop's own family.
[[nodiscard]] QFont windowFont(int pixelSize = 13, QFont::Weight weight = QFont::Normal);

/// The symbols drawn in windows. Main thread.
[[nodiscard]] SymbolCache& windowSymbols();

constexpr double kDisabledOpacity = 0.42;

} // namespace quillmoth
