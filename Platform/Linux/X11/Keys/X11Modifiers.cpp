#include "Platform/Linux/X11/Keys/X11Modifiers.h"

#include "Platform/Keys.h"
#include "Platform/Linux/X11/Server/X11Reply.h"

#include <algorithm>
#include <iterator>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace quillmoth::platform {

namespace {

constexpr int kLockRow = XCB_MAP_INDEX_LOCK;
constexpr int kRows = 8;

bool writes(xcb_connection_t* connection, xcb_keycode_t keycode, xcb_keysym_t keysym) {
    const auto cookie = xcb_get_keyboard_mapping(connection, keycode, 1);
    const auto reply = owned(xcb_get_keyboard_mapping_reply(connection, cookie, nullptr));
    if (!reply)
        return false;
    const auto* keysyms = xcb_get_keyboard_mapping_keysyms(reply.get());
    return std::find(keysyms, keysyms + reply->keysyms_per_keycode, keysym) !=
           keysyms + reply->keysyms_per_keycode;
}

} // namespace

std::uint32_t modifiersForCarbon(std::uint32_t carbonModifiers) {
    struct Pair {
        std::uint32_t carbon;
        std::uint32_t mask;
    };

    constexpr Pair kPairs[] = {{keys::kCarbonCommand, XCB_MOD_MASK_CONTROL},
                               {keys::kCarbonShift, XCB_MOD_MASK_SHIFT},
                               {keys::kCarbonOption, XCB_MOD_MASK_1},
                               {keys::kCarbonControl, XCB_MOD_MASK_4}};
    std::uint32_t result = 0;
    for (const auto& [carbon, mask] : kPairs) {
        if (carbonModifiers & carbon)
            result |= mask;
    }
    return result;
}

X11Modifiers::X11Modifiers(X11Connection& connection) {
    const auto cookie = xcb_get_modifier_mapping(connection.get());
    const auto reply = owned(xcb_get_modifier_mapping_reply(connection.get(), cookie, nullptr));
    if (!reply)
        return;
    const auto* keycodes = xcb_get_modifier_mapping_keycodes(reply.get());
    const int width = reply->keycodes_per_modifier;
    for (int row = 0; row < kRows; ++row) {
        for (int column = 0; column < width; ++column) {
            const auto keycode = keycodes[row * width + column];
            if (keycode == 0 || row == kLockRow)
                continue;
            if (row >= XCB_MAP_INDEX_2 && writes(connection.get(), keycode, XKB_KEY_Num_Lock))
                numLock_ |= 1U << row;
            else
                heldKeys_.push_back(keycode);
        }
    }
    std::sort(heldKeys_.begin(), heldKeys_.end());
    heldKeys_.erase(std::unique(heldKeys_.begin(), heldKeys_.end()), heldKeys_.end());
}

std::array<std::uint32_t, 4> X11Modifiers::lockVariants() const {
    return {0, XCB_MOD_MASK_LOCK, numLock_, XCB_MOD_MASK_LOCK | numLock_};
}

std::vector<xcb_keycode_t> keysDown(X11Connection& connection, const std::vector<xcb_keycode_t>& among) {
    const auto reply =
        owned(xcb_query_keymap_reply(connection.get(), xcb_query_keymap(connection.get()), nullptr));
    std::vector<xcb_keycode_t> down;
    if (!reply)
        return down;
    std::copy_if(among.begin(), among.end(), std::back_inserter(down), [&](xcb_keycode_t keycode) {
        return (reply->keys[keycode / 8] & (1 << (keycode % 8))) != 0;
    });
    return down;
}

bool isKeyDown(X11Connection& connection, xcb_keycode_t keycode) {
    return !keysDown(connection, {keycode}).empty();
}

} // namespace quillmoth::platform
