#pragma once

#include <string>

namespace quillmoth::test {

/// Writes a picture of what KWin shows as PNG. False where KWin gives none.
bool saveKWinPicture(const std::string& path);

} // namespace quillmoth::test
