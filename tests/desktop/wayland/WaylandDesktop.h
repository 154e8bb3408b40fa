#pragma once

#include "tests/desktop/support/ProgramSession.h"
#include "tests/desktop/wayland/WaylandInput.h"

#include <string>

namespace quillmoth::test {

/// A Wayland session without a screen, with the program, its home and its chat server in it. The environment
/// of this process points there while the object lives.
class WaylandDesktop {
public:
    virtual ~WaylandDesktop() = default;

    virtual ProgramSession& program() = 0;
    virtual WaylandInput& input() = 0;
    /// Writes a picture of the screen as PNG.
    virtual void saveScreenshot(const std::string& path) = 0;
};

} // namespace quillmoth::test
