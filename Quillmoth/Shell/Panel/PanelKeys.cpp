#include "Quillmoth/Shell/Panel/PanelKeys.h"

#include "Quillmoth/Shell/Looks/OwnKeys.h"

#include <array>
#include <string_view>
#include <utility>

namespace quillmoth {

namespace {

using Key = FloatingViewController::Key;

constexpr std::pair<OwnKey, Key> kActions[] = {
    {OwnKey::replaceSelection, Key::replaceSelection},
    {OwnKey::regenerate, Key::regenerate},
    {OwnKey::larger, Key::larger},
    {OwnKey::smaller, Key::smaller},
    {OwnKey::defaultSize, Key::defaultSize},
    {OwnKey::cancel, Key::cancel},
    {OwnKey::history, Key::history},
    {OwnKey::markdown, Key::markdown},
    {OwnKey::copyAll, Key::copyAll},
    {OwnKey::onTop, Key::onTop},
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
    for (const auto& [own, key] : kActions)
        if (isOwnKey(event, own))
            return key;
    return std::nullopt;
}

bool actsOnRepeat(Key key) {
    return key == Key::larger || key == Key::smaller;
}

} // namespace quillmoth
