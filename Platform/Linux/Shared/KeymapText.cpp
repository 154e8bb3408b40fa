#include "Platform/Linux/Shared/KeymapText.h"

#include <algorithm>
#include <iterator>
#include <linux/input-event-codes.h>
#include <string_view>
#include <utility>

namespace quillmoth::platform {

namespace {

struct KeyCap {
    xkb_keysym_t keysym;
    std::string_view text;
};

/// What a key cap shows where the key itself writes nothing.
constexpr KeyCap kKeyCaps[] = {
    {XKB_KEY_dead_grave, "`"},
    {XKB_KEY_dead_acute, "\u00B4"},
    {XKB_KEY_dead_circumflex, "^"},
    {XKB_KEY_dead_tilde, "~"},
    {XKB_KEY_dead_diaeresis, "\u00A8"},
    {XKB_KEY_dead_cedilla, "\u00B8"},
    {XKB_KEY_dead_abovering, "\u02DA"},
    {XKB_KEY_dead_caron, "\u02C7"},
    {XKB_KEY_dead_macron, "\u00AF"},
    {XKB_KEY_KP_Enter, "\u2324"},
    {XKB_KEY_Num_Lock, "\u21ED"},
    {XKB_KEY_Caps_Lock, "\u21EA"},
    {XKB_KEY_XF86AudioMute, "\U0001F507"},
    {XKB_KEY_XF86AudioLowerVolume, "\U0001F509"},
    {XKB_KEY_XF86AudioRaiseVolume, "\U0001F50A"},
};

std::string keysymText(xkb_keysym_t keysym) {
    const auto* cap = std::find_if(std::begin(kKeyCaps), std::end(kKeyCaps),
                                   [&](const KeyCap& key) { return key.keysym == keysym; });
    if (cap != std::end(kKeyCaps))
        return std::string(cap->text);
    char buffer[8] = {};
    if (xkb_keysym_to_utf8(keysym, buffer, sizeof buffer) <= 1)
        return {};
    const auto first = static_cast<unsigned char>(buffer[0]);
    return first < 0x20 || first == 0x7F ? std::string() : std::string(buffer);
}

std::string levelText(xkb_keymap* keymap, xkb_keycode_t keycode, xkb_layout_index_t layout,
                      xkb_level_index_t level) {
    const xkb_keysym_t* keysyms = nullptr;
    const int count = xkb_keymap_key_get_syms_by_level(keymap, keycode, layout, level, &keysyms);
    return count == 1 ? keysymText(keysyms[0]) : std::string();
}

/// Without modifiers; keys of the number pad write on their second level only.
std::string keyText(xkb_keymap* keymap, xkb_keycode_t keycode, xkb_layout_index_t layout) {
    auto text = levelText(keymap, keycode, layout, 0);
    return text.empty() ? levelText(keymap, keycode, layout, 1) : text;
}

/// True where most of the positions that are letters on an ANSI keyboard write ASCII.
bool isASCIICapable(xkb_keymap* keymap, xkb_layout_index_t layout) {
    constexpr std::pair<int, int> kRows[] = {{KEY_Q, KEY_P}, {KEY_A, KEY_L}, {KEY_Z, KEY_M}};
    int ascii = 0;
    for (const auto& [first, last] : kRows) {
        for (int key = first; key <= last; ++key) {
            const auto text = keyText(keymap, static_cast<xkb_keycode_t>(key + 8), layout);
            ascii += text.size() == 1 ? 1 : 0;
        }
    }
    return ascii > 13;
}

/// A layout without Latin letters gives way to the first one of the user's that has them.
xkb_layout_index_t layoutToShow(xkb_keymap* keymap, xkb_layout_index_t layout) {
    if (isASCIICapable(keymap, layout))
        return layout;
    for (xkb_layout_index_t other = 0; other < xkb_keymap_num_layouts(keymap); ++other) {
        if (isASCIICapable(keymap, other))
            return other;
    }
    return layout;
}

} // namespace

std::optional<std::string> writtenByKey(xkb_keymap* keymap, xkb_keycode_t keycode,
                                        xkb_layout_index_t layoutInForce) {
    auto text = keyText(keymap, keycode, layoutToShow(keymap, layoutInForce));
    return text.empty() ? std::nullopt : std::optional(std::move(text));
}

} // namespace quillmoth::platform
