#include "Platform/Linux/Wayland/WaylandKeyboardEvents.h"

#include "Platform/Linux/Shared/Keycodes.h"

#include <xkbcommon/xkbcommon-keysyms.h>

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

bool WaylandKeyboardEvents::postPaste() {
    const auto stroke = strokeFor(XKB_KEY_v, true);
    return stroke && strike(*stroke);
}

bool WaylandKeyboardEvents::postDelete() {
    const auto stroke = strokeFor(XKB_KEY_Delete, false);
    return stroke && strike(*stroke);
}

std::optional<WaylandKeyboardEvents::Stroke> WaylandKeyboardEvents::strokeFor(xkb_keysym_t keysym,
                                                                              bool control) const {
    const auto keymap = layout_.keymap();
    if (!keymap)
        return std::nullopt;
    // What chords go by is the first of the user's layouts that has the letter.
    for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts(keymap.get()); ++layout) {
        for (auto key = xkb_keymap_min_keycode(keymap.get()); key <= xkb_keymap_max_keycode(keymap.get());
             ++key) {
            const xkb_keysym_t* keysyms = nullptr;
            if (xkb_keymap_key_get_syms_by_level(keymap.get(), key, layout, 0, &keysyms) == 1 &&
                keysyms[0] == keysym)
                return Stroke{.keycode = key, .layout = layout, .control = control};
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
