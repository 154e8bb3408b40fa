#pragma once

#include "Platform/Accessibility.h"

namespace quillmoth {

/// Reads the element that has the focus from `systemWide` into `focused`. A success without an element is a
/// fatal fault of the system.
[[nodiscard]] platform::AXError readFocusedElement(platform::Accessibility& accessibility,
                                                   const platform::AXUIElementRef& systemWide,
                                                   platform::AXUIElementRef& focused);

} // namespace quillmoth
