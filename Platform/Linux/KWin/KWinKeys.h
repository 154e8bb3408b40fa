#pragma once

#include "Platform/Keys.h"

#include <vector>
#include <xkbcommon/xkbcommon.h>

namespace quillmoth::platform {

/// The codes, of Qt::Key with modifiers, under which KWin sees a key of the keyboard pressed together with
/// `modifiers`. It goes by what the key writes under the layout in force, so there may be one for each
/// layout; that of the first layout comes first. Empty for a key that has none. `keycode` is the kernel's
/// plus 8.
[[nodiscard]] std::vector<int> keysSeenByKWin(xkb_keymap* keymap, xkb_keycode_t keycode,
                                              keys::CarbonModifiers modifiers);

} // namespace quillmoth::platform
