#pragma once

#include <optional>
#include <string>
#include <xkbcommon/xkbcommon.h>

namespace quillmoth::platform {

/// What a key writes without modifiers, or the sign on its cap where it writes nothing. A layout without
/// Latin letters gives way to the first one of the keymap that has them, since shortcuts are named in those.
[[nodiscard]] std::optional<std::string> writtenByKey(xkb_keymap* keymap, xkb_keycode_t keycode,
                                                      xkb_layout_index_t layoutInForce);

} // namespace quillmoth::platform
