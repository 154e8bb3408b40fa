#pragma once

#include "Quillmoth/Diagnosis/Diagnosis.h"

namespace quillmoth {

/// Looks at the desktop session: a second or two. Main thread, with a QApplication, or a QCoreApplication
/// where `displayProblem` tells why there is no display; changes nothing.
[[nodiscard]] DesktopFacts desktopFacts(const std::string& displayProblem = {});

} // namespace quillmoth
