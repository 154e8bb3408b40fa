#pragma once

#include "Quillmoth/Diagnosis/Diagnosis.h"

namespace quillmoth {

/// Looks at the desktop session: a second or two. Main thread, with a QApplication; changes nothing.
[[nodiscard]] DesktopFacts desktopFacts();

} // namespace quillmoth
