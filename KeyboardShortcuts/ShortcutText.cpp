#include "KeyboardShortcuts/ShortcutText.h"

#include "Foundation/Text.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <string_view>

namespace quillmoth::KeyboardShortcuts {

namespace {

struct NamedKey {
    Key key;
    std::string_view symbol;
    std::string_view words;
};

constexpr NamedKey kNamedKeys[] = {
    {Key::return_, "\u21A9", "Enter"},
    {Key::delete_, "\u232B", "Backspace"},
    {Key::deleteForward, "\u2326", "Delete"},
    {Key::end, "\u2198", "End"},
    {Key::escape, "\u238B", "Escape"},
    {Key::help, "?\u20DD", "Insert"},
    {Key::home, "\u2196", "Home"},
    {Key::space, "\u23B5", "Space"},
    {Key::tab, "\u21E5", "Tab"},
    {Key::pageUp, "\u21DE", "Page Up"},
    {Key::pageDown, "\u21DF", "Page Down"},
    {Key::upArrow, "\u2191", "Up"},
    {Key::rightArrow, "\u2192", "Right"},
    {Key::downArrow, "\u2193", "Down"},
    {Key::leftArrow, "\u2190", "Left"},
};

struct KeyWords {
    Key key;
    std::string_view words;
};

/// Keys that write nothing, whose symbols are the layout's.
constexpr KeyWords kKeyWords[] = {{Key::keypadEnter, "Keypad Enter"}, {Key::keypadClear, "Num Lock"},
                                  {Key::capsLock, "Caps Lock"},       {Key::mute, "Mute"},
                                  {Key::volumeUp, "Volume Up"},       {Key::volumeDown, "Volume Down"}};

/// Keys that write what others write too.
constexpr Key kKeypadKeys[] = {Key::keypad0,      Key::keypad1,     Key::keypad2,      Key::keypad3,
                               Key::keypad4,      Key::keypad5,     Key::keypad6,      Key::keypad7,
                               Key::keypad8,      Key::keypad9,     Key::keypadEquals, Key::keypadDecimal,
                               Key::keypadDivide, Key::keypadMinus, Key::keypadPlus,   Key::keypadMultiply};

constexpr Key kFunctionKeys[] = {Key::f1,  Key::f2,  Key::f3,  Key::f4,  Key::f5,  Key::f6,  Key::f7,
                                 Key::f8,  Key::f9,  Key::f10, Key::f11, Key::f12, Key::f13, Key::f14,
                                 Key::f15, Key::f16, Key::f17, Key::f18, Key::f19, Key::f20};

/// U+F704, which stands for F1; the other function keys follow it.
constexpr char32_t kFirstFunctionKeyCharacter = 0xF704;

struct ModifierWord {
    CarbonModifiers mask;
    std::string_view word;
};

constexpr ModifierWord kModifierWords[] = {
    {kCarbonCommand, "Ctrl"}, {kCarbonOption, "Alt"}, {kCarbonShift, "Shift"}, {kCarbonControl, "Super"}};

constexpr std::string_view kReplacementCharacter = "\uFFFD";

/// Null for a key that is not in the table.
template<class Row, std::size_t count>
const Row* rowOf(const Row (&table)[count], Key key) {
    const auto* found =
        std::find_if(std::begin(table), std::end(table), [&](const Row& row) { return row.key == key; });
    return found == std::end(table) ? nullptr : found;
}

/// 1 for F1; none for another key.
std::optional<int> functionKeyNumber(Key key) {
    const auto* found = std::find(std::begin(kFunctionKeys), std::end(kFunctionKeys), key);
    if (found == std::end(kFunctionKeys))
        return std::nullopt;
    return static_cast<int>(found - std::begin(kFunctionKeys)) + 1;
}

/// For the characters U+0800 to U+FFFF.
std::string threeByteUTF8(char32_t character) {
    return {static_cast<char>(0xE0 | (character >> 12)), static_cast<char>(0x80 | ((character >> 6) & 0x3F)),
            static_cast<char>(0x80 | (character & 0x3F))};
}

} // namespace

std::optional<std::string> keyCodeText(std::int64_t carbonKeyCode, platform::KeyboardLayout& layout) {
    const Key key(carbonKeyCode);
    if (const auto* named = rowOf(kNamedKeys, key))
        return std::string(named->symbol);
    if (const auto number = functionKeyNumber(key))
        return 'F' + std::to_string(*number);
    if (carbonKeyCode < 0 || carbonKeyCode > std::numeric_limits<std::uint16_t>::max())
        return std::nullopt;
    return layout.translate(static_cast<std::uint16_t>(carbonKeyCode));
}

std::string keyEquivalent(const Shortcut& shortcut, platform::KeyboardLayout& layout) {
    auto text = keyCodeText(shortcut.carbonKeyCode, layout).value_or("");
    if (characters(text).size() < 2)
        return text;
    // The space key never comes here while its symbol is a single character.
    if (shortcut.key() == Key::space)
        return " ";
    const auto number = functionKeyNumber(shortcut.key());
    return number ? threeByteUTF8(kFirstFunctionKeyCharacter + static_cast<char32_t>(*number - 1)) : "";
}

std::string description(const Shortcut& shortcut, platform::KeyboardLayout& layout) {
    std::string text;
    for (const auto& modifier : allModifiers()) {
        if (shortcut.modifiers() & modifier.flag)
            text += modifier.symbol;
    }
    const auto key = keyCodeText(shortcut.carbonKeyCode, layout);
    return text + (key ? uppercased(*key) : std::string(kReplacementCharacter));
}

std::string spokenDescription(const Shortcut& shortcut, platform::KeyboardLayout& layout) {
    std::string text;
    for (const auto& [mask, word] : kModifierWords) {
        if (shortcut.carbonModifiers & mask)
            (text += word) += '+';
    }
    if (const auto* named = rowOf(kNamedKeys, shortcut.key()))
        return text += named->words;
    if (const auto* other = rowOf(kKeyWords, shortcut.key()))
        return text += other->words;
    if (std::find(std::begin(kKeypadKeys), std::end(kKeypadKeys), shortcut.key()) != std::end(kKeypadKeys))
        text += "Keypad ";
    const auto key = keyCodeText(shortcut.carbonKeyCode, layout);
    return text + (key ? uppercased(*key) : std::string(kReplacementCharacter));
}

} // namespace quillmoth::KeyboardShortcuts
