#pragma once

#include "MarkdownUI/Qt/MarkdownPalette.h"

namespace quillmoth {

/// The colours of messages: the renderer's own for a dark ground, with those of the panel.
[[nodiscard]] markdown::MarkdownPalette messagePalette();

} // namespace quillmoth
