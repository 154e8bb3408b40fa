#pragma once

#include <cstdint>

namespace quillmoth::markdown {

/// The appearance around a document.
enum class ColorScheme : std::uint8_t { unspecified, light, dark };

} // namespace quillmoth::markdown
