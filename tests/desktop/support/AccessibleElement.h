#pragma once

#include "tests/desktop/support/DesktopWindows.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

struct _AtspiAccessible;

namespace quillmoth::test {

/// A control of another program, as a screen reader meets it: on the accessibility bus. Nothing is cached;
/// what has gone meanwhile answers with empty values. A process that uses these has one session bus in its
/// life.
class AccessibleElement {
public:
    /// What is on screen of the program, its windows and all that they hold, from the outside in.
    [[nodiscard]] static std::vector<AccessibleElement> shownBy(pid_t process);

    /// The first of these with the role ("push button") and the name.
    [[nodiscard]] static std::optional<AccessibleElement> find(pid_t process, std::string_view role,
                                                               std::string_view name);

    [[nodiscard]] std::string role() const;
    [[nodiscard]] std::string name() const;
    [[nodiscard]] std::string description() const;
    /// The content of a text control.
    [[nodiscard]] std::string text() const;

    [[nodiscard]] bool isShowing() const;
    [[nodiscard]] bool isFocused() const;
    [[nodiscard]] bool isFocusable() const;
    [[nodiscard]] bool isChecked() const;
    [[nodiscard]] bool isEnabled() const;

    /// In the coordinates of the screen.
    [[nodiscard]] DesktopRectangle bounds() const;

    /// Does what a screen reader's "press" does; false where the control offers nothing of the kind.
    bool press() const;
    /// Replaces the content of a text control.
    bool setText(const std::string& text) const;
    bool takeFocus() const;

private:
    explicit AccessibleElement(_AtspiAccessible* accessible);

    static void collect(const AccessibleElement& element, std::vector<AccessibleElement>& all);
    [[nodiscard]] bool has(int state) const;

    std::shared_ptr<_AtspiAccessible> accessible_;
};

} // namespace quillmoth::test
