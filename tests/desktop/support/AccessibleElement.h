#pragma once

#include "tests/desktop/support/DesktopWindows.h"

#include <atspi/atspi-constants.h>

#include <memory>
#include <string>
#include <vector>

#include <sys/types.h>

struct _GDBusConnection;
struct _GVariant;

namespace quillmoth::test {

/// An object of another program, as a screen reader meets it: on the accessibility bus. Nothing is cached;
/// what has gone meanwhile answers with empty values.
class AccessibleElement {
public:
    using Bus = std::shared_ptr<_GDBusConnection>;

    AccessibleElement(Bus bus, std::string sender, std::string path);

    [[nodiscard]] std::string role() const;
    [[nodiscard]] std::string name() const;
    [[nodiscard]] std::string description() const;
    /// The content of a text.
    [[nodiscard]] std::string text() const;
    /// Its selected part.
    [[nodiscard]] std::string selection() const;
    /// In the coordinates of the screen.
    [[nodiscard]] DesktopRectangle bounds() const;
    /// The program that it belongs to; 0 where that has gone.
    [[nodiscard]] pid_t process() const;
    [[nodiscard]] std::vector<AccessibleElement> children() const;

    [[nodiscard]] bool has(AtspiStateType state) const;

    [[nodiscard]] bool isFocused() const { return has(ATSPI_STATE_FOCUSED); }

    [[nodiscard]] bool isSelected() const { return has(ATSPI_STATE_SELECTED); }

    /// Does what a screen reader's "press" does; false where the control offers nothing of the kind.
    bool press() const;
    /// Replaces the content of a text control.
    bool setText(const std::string& text) const;

private:
    using Reply = std::shared_ptr<_GVariant>;

    /// None where the call fails or takes too long.
    [[nodiscard]] Reply call(const char* interface, const char* method, _GVariant* arguments,
                             const char* replyType) const;
    [[nodiscard]] Reply property(const char* interface, const char* name) const;
    [[nodiscard]] std::string textBetween(int start, int end) const;

    Bus bus_;
    std::string sender_;
    std::string path_;
};

} // namespace quillmoth::test
