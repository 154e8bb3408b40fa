#include "Platform/Linux/Desktop/KeyCombination.h"

#include "Foundation/ASCII.h"
#include "Platform/KeyboardLayout.h"
#include "Platform/Keys.h"

#include <algorithm>
#include <array>
#include <utility>

namespace quillmoth::platform {

namespace {

using keys::Key;

using NamedModifier = std::pair<std::string_view, keys::CarbonModifiers>;

constexpr std::array kOpenboxModifiers{
    NamedModifier{"C", keys::kCarbonCommand}, NamedModifier{"A", keys::kCarbonOption},
    NamedModifier{"S", keys::kCarbonShift}, NamedModifier{"W", keys::kCarbonControl}};

constexpr std::array kAcceleratorModifiers{
    NamedModifier{"primary", keys::kCarbonCommand}, NamedModifier{"control", keys::kCarbonCommand},
    NamedModifier{"ctrl", keys::kCarbonCommand},    NamedModifier{"ctl", keys::kCarbonCommand},
    NamedModifier{"alt", keys::kCarbonOption},      NamedModifier{"mod1", keys::kCarbonOption},
    NamedModifier{"shift", keys::kCarbonShift},     NamedModifier{"shft", keys::kCarbonShift},
    NamedModifier{"super", keys::kCarbonControl},   NamedModifier{"mod4", keys::kCarbonControl}};

/// Keys that write nothing, by the names of X.h's keysyms.
constexpr std::pair<std::string_view, Key> kNamedKeys[] = {{"space", Key::space},
                                                           {"Tab", Key::tab},
                                                           {"ISO_Left_Tab", Key::tab},
                                                           {"Return", Key::return_},
                                                           {"BackSpace", Key::delete_},
                                                           {"Escape", Key::escape},
                                                           {"Delete", Key::deleteForward},
                                                           {"Insert", Key::help},
                                                           {"Home", Key::home},
                                                           {"End", Key::end},
                                                           {"Prior", Key::pageUp},
                                                           {"Page_Up", Key::pageUp},
                                                           {"Next", Key::pageDown},
                                                           {"Page_Down", Key::pageDown},
                                                           {"Left", Key::leftArrow},
                                                           {"Right", Key::rightArrow},
                                                           {"Down", Key::downArrow},
                                                           {"Up", Key::upArrow},
                                                           {"KP_Enter", Key::keypadEnter},
                                                           {"KP_0", Key::keypad0},
                                                           {"KP_1", Key::keypad1},
                                                           {"KP_2", Key::keypad2},
                                                           {"KP_3", Key::keypad3},
                                                           {"KP_4", Key::keypad4},
                                                           {"KP_5", Key::keypad5},
                                                           {"KP_6", Key::keypad6},
                                                           {"KP_7", Key::keypad7},
                                                           {"KP_8", Key::keypad8},
                                                           {"KP_9", Key::keypad9},
                                                           {"KP_Add", Key::keypadPlus},
                                                           {"KP_Subtract", Key::keypadMinus},
                                                           {"KP_Multiply", Key::keypadMultiply},
                                                           {"KP_Divide", Key::keypadDivide},
                                                           {"F1", Key::f1},
                                                           {"F2", Key::f2},
                                                           {"F3", Key::f3},
                                                           {"F4", Key::f4},
                                                           {"F5", Key::f5},
                                                           {"F6", Key::f6},
                                                           {"F7", Key::f7},
                                                           {"F8", Key::f8},
                                                           {"F9", Key::f9},
                                                           {"F10", Key::f10},
                                                           {"F11", Key::f11},
                                                           {"F12", Key::f12},
                                                           {"F13", Key::f13},
                                                           {"F14", Key::f14},
                                                           {"F15", Key::f15},
                                                           {"F16", Key::f16},
                                                           {"F17", Key::f17},
                                                           {"F18", Key::f18},
                                                           {"F19", Key::f19},
                                                           {"F20", Key::f20}};

constexpr std::pair<std::string_view, std::string_view> kPunctuation[] = {
    {"minus", "-"},        {"equal", "="},      {"comma", ","}, {"period", "."},    {"slash", "/"},
    {"semicolon", ";"},    {"apostrophe", "'"}, {"grave", "`"}, {"plus", "+"},      {"bracketleft", "["},
    {"bracketright", "]"}, {"backslash", "\\"}, {"less", "<"},  {"numbersign", "#"}};

/// The writing keys of a keyboard have the virtual key codes up to here.
constexpr std::uint16_t kLastWritingKey = 50;

template<class Table>
auto lookedUp(const Table& table, std::string_view name) {
    const auto found = std::find_if(std::begin(table), std::end(table),
                                    [&](const auto& entry) { return entry.first == name; });
    return found == std::end(table) ? std::nullopt : std::optional(found->second);
}

} // namespace

std::optional<KeyCombination> openboxCombination(std::string_view text) {
    KeyCombination combination;
    // The key itself may be the minus sign's name, never the sign.
    for (std::size_t dash = text.find('-'); dash != std::string_view::npos; dash = text.find('-')) {
        const auto modifier = lookedUp(kOpenboxModifiers, text.substr(0, dash));
        if (!modifier)
            return std::nullopt;
        combination.carbonModifiers |= *modifier;
        text.remove_prefix(dash + 1);
    }
    combination.key = text;
    return text.empty() ? std::nullopt : std::optional(std::move(combination));
}

std::optional<KeyCombination> acceleratorCombination(std::string_view text) {
    KeyCombination combination;
    while (text.starts_with('<')) {
        const std::size_t end = text.find('>');
        if (end == std::string_view::npos)
            return std::nullopt;
        const auto modifier = lookedUp(kAcceleratorModifiers, lowercasedASCII(text.substr(1, end - 1)));
        if (!modifier)
            return std::nullopt;
        combination.carbonModifiers |= *modifier;
        text.remove_prefix(end + 1);
    }
    combination.key = text;
    return text.empty() || text == "disabled" ? std::nullopt : std::optional(std::move(combination));
}

std::string writtenAccelerator(const KeyCombination& combination) {
    constexpr std::pair<keys::CarbonModifiers, const char*> kWritten[] = {{keys::kCarbonCommand, "<Control>"},
                                                                          {keys::kCarbonOption, "<Alt>"},
                                                                          {keys::kCarbonShift, "<Shift>"},
                                                                          {keys::kCarbonControl, "<Super>"}};
    std::string text;
    for (const auto& [modifier, name] : kWritten) {
        if ((combination.carbonModifiers & modifier) != 0)
            text += name;
    }
    return text + combination.key;
}

KeyNames::KeyNames(KeyboardLayout& layout) {
    for (std::uint16_t code = 0; code <= kLastWritingKey; ++code) {
        if (auto text = layout.translate(code))
            characters_.emplace(std::move(*text), code);
    }
}

std::optional<std::uint16_t> KeyNames::virtualKeyCode(const std::string& key) const {
    if (const auto named = lookedUp(kNamedKeys, key))
        return named->code();
    const auto sign = lookedUp(kPunctuation, key);
    const auto found = characters_.find(sign ? std::string(*sign) : lowercasedASCII(key));
    return found == characters_.end() ? std::nullopt : std::optional(found->second);
}

std::optional<std::string> KeyNames::name(std::uint16_t virtualKeyCode) const {
    const auto named = std::find_if(std::begin(kNamedKeys), std::end(kNamedKeys),
                                    [&](const auto& entry) { return entry.second.code() == virtualKeyCode; });
    if (named != std::end(kNamedKeys))
        return std::string(named->first);
    const auto found = std::find_if(characters_.begin(), characters_.end(),
                                    [&](const auto& entry) { return entry.second == virtualKeyCode; });
    if (found == characters_.end() || found->first.size() != 1)
        return std::nullopt;
    const auto sign = std::find_if(std::begin(kPunctuation), std::end(kPunctuation),
                                   [&](const auto& entry) { return entry.second == found->first; });
    if (sign != std::end(kPunctuation))
        return std::string(sign->first);
    const char character = found->first.front();
    const bool isNamedByItself =
        (character >= 'a' && character <= 'z') || (character >= '0' && character <= '9');
    return isNamedByItself ? std::optional(found->first) : std::nullopt;
}

} // namespace quillmoth::platform
