#pragma once

#include "tests/desktop/support/AccessibleElement.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace quillmoth::test {

/// A program as a screen reader meets it: what its objects are, and what it tells by itself. It shares no
/// code with what the program reads others by.
class AccessibleProgram {
public:
    /// Of the desktop that the environment names. Throws std::runtime_error where it has no accessibility
    /// bus.
    explicit AccessibleProgram(pid_t process);
    ~AccessibleProgram();
    AccessibleProgram(const AccessibleProgram&) = delete;
    AccessibleProgram& operator=(const AccessibleProgram&) = delete;

    /// All that is showing, its windows and what they hold, from the outside in.
    [[nodiscard]] std::vector<AccessibleElement> showing() const;
    /// The first of these with the role ("push button") whose name begins so.
    [[nodiscard]] std::optional<AccessibleElement> find(std::string_view role,
                                                        std::string_view name = "") const;
    /// Whether any name or text on screen contains `text`.
    [[nodiscard]] bool shows(std::string_view text) const;
    /// The names of all with the role.
    [[nodiscard]] std::vector<std::string> names(std::string_view role) const;
    /// "role name" of what has the focus, from the outside in, but rows.
    [[nodiscard]] std::vector<std::string> focused() const;

    /// What has been told to screen readers since the last call: the names of messages that came up.
    [[nodiscard]] std::vector<std::string> takeMessages();

    /// All that is showing, a line each.
    [[nodiscard]] std::string described() const;

private:
    pid_t process_;
    AccessibleElement::Bus bus_;
    unsigned subscription_ = 0;
    /// Sender and path of what came on screen.
    std::vector<std::pair<std::string, std::string>> appeared_;
};

} // namespace quillmoth::test
