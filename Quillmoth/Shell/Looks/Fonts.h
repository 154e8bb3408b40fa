#pragma once

#include <QFont>

namespace quillmoth {

/// The desktop's font for text at a size in pixels, colour emoji before other fallbacks. Without a size, that
/// of the windows' controls.
[[nodiscard]] QFont textFont(double pixelSize = 13, QFont::Weight weight = QFont::Normal);

/// The same with the colour emoji first, for text that is one.
[[nodiscard]] QFont emojiFont(double pixelSize);

/// Whether `text` starts with an emoji or another pictograph, rather than with a letter, digit or sign.
[[nodiscard]] bool startsWithPictograph(const QString& text);

} // namespace quillmoth
