#pragma once

#include "tests/desktop/support/VirtualDesktop.h"

namespace quillmoth::test {

/// From now on each failed check keeps a picture of the desktop in the folder "screenshots" of the working
/// folder, named after the test. `desktop` must outlive the run, or be forgotten again with null.
void keepScreenshotsOnFailure(VirtualDesktop* desktop);

} // namespace quillmoth::test
