#include "Quillmoth/Shell/Panel/PanelKeys.h"

#include <QKeyEvent>

#include <array>

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

} // namespace

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
