#include "Quillmoth/Shell/Panel/PanelKeys.h"

#include <array>
#include <string_view>

namespace quillmoth {

namespace {

using Key = FloatingViewController::Key;

struct Equivalent {
    int key;
    Qt::KeyboardModifiers modifiers;
    Key action;
};

constexpr Qt::KeyboardModifiers kControl = Qt::ControlModifier;
constexpr Qt::KeyboardModifiers kControlShift = Qt::ControlModifier | Qt::ShiftModifier;

// "+" needs Shift on many layouts and none on others.
constexpr std::array kEquivalents{
    Equivalent{Qt::Key_Return, kControl, Key::replaceSelection},
    Equivalent{Qt::Key_Enter, kControl, Key::replaceSelection},
    Equivalent{Qt::Key_R, kControl, Key::regenerate},
    Equivalent{Qt::Key_Plus, kControl, Key::larger},
    Equivalent{Qt::Key_Plus, kControlShift, Key::larger},
    Equivalent{Qt::Key_Equal, kControl, Key::larger},
    Equivalent{Qt::Key_Equal, kControlShift, Key::larger},
    Equivalent{Qt::Key_Minus, kControl, Key::smaller},
    Equivalent{Qt::Key_0, kControl, Key::defaultSize},
    Equivalent{Qt::Key_Escape, Qt::NoModifier, Key::cancel},
    Equivalent{Qt::Key_H, kControl, Key::history},
    Equivalent{Qt::Key_M, kControl, Key::markdown},
    Equivalent{Qt::Key_C, kControlShift, Key::copyAll},
    Equivalent{Qt::Key_T, kControl, Key::onTop},
};

/// Keys in a row of the keyboard, with the number of the first one: as evdev has it, and 8 more, as X and
/// Wayland tell it.
struct KeyRow {
    quint32 first;
    std::string_view symbols;
};

constexpr std::array kRows{KeyRow{10, "1234567890"}, KeyRow{24, "QWERTYUIOP"}, KeyRow{38, "ASDFGHJKL"},
                           KeyRow{52, "ZXCVBNM"}};

std::optional<int> latinSymbolOn(quint32 scanCode) {
    for (const KeyRow& row : kRows)
        if (scanCode >= row.first && scanCode - row.first < row.symbols.size())
            return row.symbols[scanCode - row.first];
    return std::nullopt;
}

bool isBeyondASCII(int key) {
    return key > 0x7F && key < Qt::Key_Escape;
}

} // namespace

std::unique_ptr<QKeyEvent> latinEquivalent(const QKeyEvent& event) {
    const auto symbol = latinSymbolOn(event.nativeScanCode());
    if (!(event.modifiers() & Qt::ControlModifier) || !isBeyondASCII(event.key()) || !symbol)
        return nullptr;
    return std::make_unique<QKeyEvent>(event.type(), *symbol, event.modifiers(), event.nativeScanCode(),
                                       event.nativeVirtualKey(), event.nativeModifiers(), event.text(),
                                       event.isAutoRepeat(), static_cast<quint16>(event.count()));
}

std::optional<Key> panelKeyFor(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    for (const Equivalent& each : kEquivalents)
        if (each.key == event.key() && each.modifiers == modifiers)
            return each.action;
    return std::nullopt;
}

bool actsOnRepeat(Key key) {
    return key == Key::larger || key == Key::smaller;
}

} // namespace quillmoth
