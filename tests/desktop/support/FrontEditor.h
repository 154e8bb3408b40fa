#pragma once

#include "tests/desktop/support/AccessibleProgram.h"
#include "tests/desktop/support/VirtualDesktop.h"

#include <cstdint>
#include <string>

namespace quillmoth::test {

/// A text editor of somebody else's, the window in front in which a user writes.
class FrontEditor {
public:
    /// Shows a file with `text`; returns when it has the keyboard. Throws std::runtime_error where it does
    /// not come up. `desktop` outlives it.
    FrontEditor(VirtualDesktop& desktop, const std::string& text);

    [[nodiscard]] std::string text() const;
    [[nodiscard]] std::string selection() const;

    [[nodiscard]] std::uint32_t window() const { return window_; }

    [[nodiscard]] bool isActive() const { return desktop_.windows().activeWindow() == window_; }

    /// By the keyboard.
    void selectFirstLine();
    /// The caret goes to the end.
    void deselect();

private:
    VirtualDesktop& desktop_;
    ChildProcess process_;
    AccessibleProgram program_;
    std::uint32_t window_ = 0;
};

} // namespace quillmoth::test
