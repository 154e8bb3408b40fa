#include "Platform/Linux/Wayland/WaylandKeyboardEvents.h"

#include "Platform/Linux/Shared/Keycodes.h"

#include <algorithm>

namespace quillmoth::platform {

namespace {

constexpr std::chrono::milliseconds kSendLimit{250};

} // namespace

std::optional<CGKeyboardEvent> WaylandKeyboardEvents::createKeyboardEvent(std::uint16_t keyCode,
                                                                          bool keyDown) {
    if (!keycodeForVirtualKeyCode(keyCode))
        return std::nullopt;
    return CGKeyboardEvent{keyCode, keyDown, 0};
}

void WaylandKeyboardEvents::post(const CGKeyboardEvent& event) {
    const auto keycode = keycodeForVirtualKeyCode(event.keyCode);
    const bool isCommand = (event.flags & keys::kFlagCommand) != 0;
    const bool isForbidden = isForbidden_ && isCommand && event.keyDown && isForbidden_();
    if (!keycode || isForbidden)
        return;
    const Stroke stroke{.keycode = *keycode, .layout = 0, .control = isCommand};
    connection_.ask<bool>(
        [this, stroke, isDown = event.keyDown] {
            if (!makeReady())
                return false;
            send(stroke, isDown);
            return finish();
        },
        WaylandConnection::Clock::now() + kSendLimit);
}

bool WaylandKeyboardEvents::postKeys(const std::vector<Key>& keys) {
    std::vector<Stroke> strokes;
    for (const Key& key : keys) {
        const auto stroke = strokeFor(key);
        if (!stroke)
            return false;
        strokes.push_back(*stroke);
    }
    return std::all_of(strokes.begin(), strokes.end(),
                       [this](const Stroke& stroke) { return strike(stroke); });
}

std::optional<WaylandKeyboardEvents::Stroke> WaylandKeyboardEvents::strokeFor(const Key& wanted) const {
    const auto keymap = layout_.keymap();
    if (!keymap)
        return std::nullopt;
    const auto writes = [&](xkb_keycode_t key, xkb_layout_index_t layout, xkb_level_index_t level) {
        const xkb_keysym_t* keysyms = nullptr;
        return xkb_keymap_key_get_syms_by_level(keymap.get(), key, layout, level, &keysyms) == 1 &&
               keysyms[0] == wanted.keysym;
    };
    // What chords go by is the first of the user's layouts that has the letter. The second level is Shift's.
    for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts(keymap.get()); ++layout) {
        for (const bool shift : {false, true}) {
            for (auto key = xkb_keymap_min_keycode(keymap.get()); key <= xkb_keymap_max_keycode(keymap.get());
                 ++key) {
                if (writes(key, layout, shift ? 1 : 0))
                    return Stroke{
                        .keycode = key, .layout = layout, .control = wanted.control, .shift = shift};
            }
        }
    }
    return std::nullopt;
}

bool WaylandKeyboardEvents::strike(const Stroke& stroke) {
    return connection_
        .ask<bool>(
            [this, stroke] {
                if (!makeReady())
                    return false;
                send(stroke, true);
                send(stroke, false);
                return finish();
            },
            WaylandConnection::Clock::now() + kSendLimit)
        .value_or(false);
}

} // namespace quillmoth::platform
