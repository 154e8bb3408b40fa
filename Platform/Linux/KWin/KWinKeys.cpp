#include "Platform/Linux/KWin/KWinKeys.h"

#include <QChar>
#include <algorithm>
#include <iterator>
#include <utility>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace quillmoth::platform {

namespace {

/// Keys that write nothing.
constexpr std::pair<xkb_keysym_t, Qt::Key> kSilentKeys[] = {
    {XKB_KEY_Return, Qt::Key_Return},
    {XKB_KEY_KP_Enter, Qt::Key_Enter},
    {XKB_KEY_Tab, Qt::Key_Tab},
    {XKB_KEY_ISO_Left_Tab, Qt::Key_Tab},
    {XKB_KEY_BackSpace, Qt::Key_Backspace},
    {XKB_KEY_Escape, Qt::Key_Escape},
    {XKB_KEY_Delete, Qt::Key_Delete},
    {XKB_KEY_Insert, Qt::Key_Insert},
    {XKB_KEY_Help, Qt::Key_Help},
    {XKB_KEY_Home, Qt::Key_Home},
    {XKB_KEY_End, Qt::Key_End},
    {XKB_KEY_Prior, Qt::Key_PageUp},
    {XKB_KEY_Next, Qt::Key_PageDown},
    {XKB_KEY_Left, Qt::Key_Left},
    {XKB_KEY_Right, Qt::Key_Right},
    {XKB_KEY_Up, Qt::Key_Up},
    {XKB_KEY_Down, Qt::Key_Down},
    {XKB_KEY_Caps_Lock, Qt::Key_CapsLock},
    {XKB_KEY_Num_Lock, Qt::Key_NumLock},
    {XKB_KEY_XF86AudioMute, Qt::Key_VolumeMute},
    {XKB_KEY_XF86AudioRaiseVolume, Qt::Key_VolumeUp},
    {XKB_KEY_XF86AudioLowerVolume, Qt::Key_VolumeDown},
};

constexpr std::pair<keys::CarbonModifiers, Qt::KeyboardModifier> kModifiers[] = {
    {keys::kCarbonCommand, Qt::ControlModifier},
    {keys::kCarbonOption, Qt::AltModifier},
    {keys::kCarbonShift, Qt::ShiftModifier},
    {keys::kCarbonControl, Qt::MetaModifier},
};

int modifiersSeen(keys::CarbonModifiers modifiers) {
    int seen = 0;
    for (const auto& [carbon, qt] : kModifiers)
        seen |= (modifiers & carbon) != 0 ? static_cast<int>(qt) : 0;
    return seen;
}

/// 0 for none.
int keySeen(xkb_keysym_t keysym) {
    const auto* silent = std::find_if(std::begin(kSilentKeys), std::end(kSilentKeys),
                                      [keysym](const auto& entry) { return entry.first == keysym; });
    if (silent != std::end(kSilentKeys))
        return silent->second;
    if (keysym >= XKB_KEY_F1 && keysym <= XKB_KEY_F35)
        return static_cast<int>(Qt::Key_F1 + (keysym - XKB_KEY_F1));
    if (keysym >= XKB_KEY_dead_grave && keysym <= XKB_KEY_dead_longsolidusoverlay)
        return static_cast<int>(Qt::Key_Dead_Grave + (keysym - XKB_KEY_dead_grave));
    const char32_t character = xkb_keysym_to_utf32(keysym);
    const bool isOnNumberPad = keysym >= XKB_KEY_KP_Space && keysym <= XKB_KEY_KP_Equal;
    const int code = character < U' ' ? 0 : static_cast<int>(QChar::toUpper(character));
    return code != 0 && isOnNumberPad ? code | static_cast<int>(Qt::KeypadModifier) : code;
}

xkb_keysym_t keysymAt(xkb_keymap* keymap, xkb_keycode_t keycode, xkb_layout_index_t layout,
                      xkb_level_index_t level) {
    const xkb_keysym_t* keysyms = nullptr;
    const int count = xkb_keymap_key_get_syms_by_level(keymap, keycode, layout, level, &keysyms);
    return count == 1 ? keysyms[0] : xkb_keysym_t{XKB_KEY_NoSymbol};
}

} // namespace

std::vector<int> keysSeenByKWin(xkb_keymap* keymap, xkb_keycode_t keycode, keys::CarbonModifiers modifiers) {
    std::vector<int> found;
    const auto add = [&found](int key, int seenModifiers) {
        const int code = key | seenModifiers;
        if (key != 0 && std::find(found.begin(), found.end(), code) == found.end())
            found.push_back(code);
    };
    const int seen = modifiersSeen(modifiers);
    constexpr int kShift = static_cast<int>(Qt::ShiftModifier);
    for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts_for_key(keymap, keycode); ++layout) {
        const int plain = keySeen(keysymAt(keymap, keycode, layout, 0));
        const int second = keySeen(keysymAt(keymap, keycode, layout, 1));
        // Shift has done its work where the key writes another sign with it; letters keep it.
        if ((seen & kShift) != 0 && second != plain)
            add(second, seen & ~kShift);
        add(plain, seen);
        // The number pad's digits are on the second level.
        if ((second & static_cast<int>(Qt::KeypadModifier)) != 0)
            add(second, seen);
    }
    return found;
}

} // namespace quillmoth::platform
