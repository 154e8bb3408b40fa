#include "Platform/Linux/X11/Keys/X11KeyboardLayout.h"

#include "Platform/Linux/Shared/Keycodes.h"
#include "Platform/Linux/Shared/KeymapText.h"

#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

namespace quillmoth::platform {

namespace {

using Keymap = std::unique_ptr<xkb_keymap, void (*)(xkb_keymap*)>;
using State = std::unique_ptr<xkb_state, void (*)(xkb_state*)>;

} // namespace

X11KeyboardLayout::X11KeyboardLayout(X11Connection& connection)
    : connection_(connection), context_(xkb_context_new(XKB_CONTEXT_NO_FLAGS), &xkb_context_unref) {}

X11KeyboardLayout::~X11KeyboardLayout() = default;

std::optional<std::string> X11KeyboardLayout::translate(std::uint16_t keyCode) {
    const auto keycode = keycodeForVirtualKeyCode(keyCode);
    if (!keycode || !context_)
        return std::nullopt;
    auto* connection = connection_.get();
    const auto device = xkb_x11_get_core_keyboard_device_id(connection);
    const Keymap keymap(
        xkb_x11_keymap_new_from_device(context_.get(), connection, device, XKB_KEYMAP_COMPILE_NO_FLAGS),
        &xkb_keymap_unref);
    if (!keymap)
        return std::nullopt;
    const State state(xkb_x11_state_new_from_device(keymap.get(), connection, device), &xkb_state_unref);
    if (!state)
        return std::nullopt;
    return writtenByKey(keymap.get(), *keycode,
                        xkb_state_serialize_layout(state.get(), XKB_STATE_LAYOUT_EFFECTIVE));
}

} // namespace quillmoth::platform
