#pragma once

#include "Platform/KeyboardLayout.h"
#include "Quillmoth/Settings/Recording.h"

#include <vector>

namespace quillmoth {

/// The keys of the program's windows and its panel as items of a menu, under the layout in force. Main
/// thread.
[[nodiscard]] std::vector<MainMenuItem> applicationMainMenu(platform::KeyboardLayout& layout);

} // namespace quillmoth
