#pragma once

#include "tests/desktop/support/VirtualDesktop.h"

#include <cstdint>
#include <string_view>

namespace quillmoth::test {

/// The window of this title that is mapped, also where no window manager manages it; 0 for none.
[[nodiscard]] std::uint32_t visibleWindowTitled(const VirtualDesktop& desktop, std::string_view title);

/// The mapped window of this process that no window manager manages, such as an open menu; 0 for none.
[[nodiscard]] std::uint32_t visiblePopupOf(const VirtualDesktop& desktop, std::uint32_t process);

} // namespace quillmoth::test
