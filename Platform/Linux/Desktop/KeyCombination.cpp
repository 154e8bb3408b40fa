#include "Platform/Linux/Desktop/KeyCombination.h"

#include "Foundation/ASCII.h"
#include "Platform/KeyboardLayout.h"

#include <algorithm>
#include <array>
#include <utility>

namespace quillmoth::platform {

namespace {

constexpr std::int64_t kCommand = 0x100;
constexpr std::int64_t kShift = 0x200;
constexpr std::int64_t kOption = 0x800;
constexpr std::int64_t kControl = 0x1000;

using NamedModifier = std::pair<std::string_view, std::int64_t>;

constexpr std::array kOpenboxModifiers{NamedModifier{"C", kCommand}, NamedModifier{"A", kOption},
                                       NamedModifier{"S", kShift}, NamedModifier{"W", kControl}};

constexpr std::array kAcceleratorModifiers{
    NamedModifier{"primary", kCommand}, NamedModifier{"control", kCommand}, NamedModifier{"ctrl", kCommand},
    NamedModifier{"ctl", kCommand},     NamedModifier{"alt", kOption},      NamedModifier{"mod1", kOption},
    NamedModifier{"shift", kShift},     NamedModifier{"shft", kShift},      NamedModifier{"super", kControl},
    NamedModifier{"mod4", kControl}};

/// Keys that write nothing, by the names of X.h's keysyms.
constexpr std::pair<std::string_view, std::uint16_t> kNamedKeys[] = {
    {"space", 49},       {"Tab", 48},         {"ISO_Left_Tab", 48}, {"Return", 36},     {"BackSpace", 51},
    {"Escape", 53},      {"Delete", 117},     {"Insert", 114},      {"Home", 115},      {"End", 119},
    {"Prior", 116},      {"Page_Up", 116},    {"Next", 121},        {"Page_Down", 121}, {"Left", 123},
    {"Right", 124},      {"Down", 125},       {"Up", 126},          {"KP_Enter", 76},   {"KP_0", 82},
    {"KP_1", 83},        {"KP_2", 84},        {"KP_3", 85},         {"KP_4", 86},       {"KP_5", 87},
    {"KP_6", 88},        {"KP_7", 89},        {"KP_8", 91},         {"KP_9", 92},       {"KP_Add", 69},
    {"KP_Subtract", 78}, {"KP_Multiply", 67}, {"KP_Divide", 75},    {"F1", 122},        {"F2", 120},
    {"F3", 99},          {"F4", 118},         {"F5", 96},           {"F6", 97},         {"F7", 98},
    {"F8", 100},         {"F9", 101},         {"F10", 109},         {"F11", 103},       {"F12", 111},
    {"F13", 105},        {"F14", 107},        {"F15", 113},         {"F16", 106},       {"F17", 64},
    {"F18", 79},         {"F19", 80},         {"F20", 90}};

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

KeyNames::KeyNames(KeyboardLayout& layout) {
    for (std::uint16_t code = 0; code <= kLastWritingKey; ++code) {
        if (auto text = layout.translate(code))
            characters_.emplace(std::move(*text), code);
    }
}

std::optional<std::uint16_t> KeyNames::virtualKeyCode(const std::string& key) const {
    if (const auto code = lookedUp(kNamedKeys, key))
        return code;
    const auto sign = lookedUp(kPunctuation, key);
    const auto found = characters_.find(sign ? std::string(*sign) : lowercasedASCII(key));
    return found == characters_.end() ? std::nullopt : std::optional(found->second);
}

} // namespace quillmoth::platform
