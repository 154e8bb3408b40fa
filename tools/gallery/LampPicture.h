#pragma once

#include <QByteArray>

namespace quillmoth {

/// A lamp at night, with the way of a moth around it, as a PNG file of 520 by 190 pixels.
[[nodiscard]] QByteArray lampPicture();

} // namespace quillmoth
