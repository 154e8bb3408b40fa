#pragma once

#include "Platform/Linux/AtSpi/AccessibilityBus.h"
#include "Platform/Linux/AtSpi/TextElement.h"
#include "tests/desktop/support/DesktopWindows.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth::test {

/// One object of a program, as a screen reader finds it.
struct AccessibleObject {
    platform::ObjectReference reference;
    std::string role;
    std::string name;
    platform::States states;

    [[nodiscard]] bool has(AtspiStateType state) const { return states.has(state); }
};

/// A program as a screen reader meets it: what its objects are, what can be done to them, and what it tells
/// by itself.
class AccessibleProgram {
public:
    explicit AccessibleProgram(std::int64_t process);
    ~AccessibleProgram();
    AccessibleProgram(const AccessibleProgram&) = delete;
    AccessibleProgram& operator=(const AccessibleProgram&) = delete;

    /// All that is showing, in the order of the tree.
    [[nodiscard]] std::vector<AccessibleObject> showing();
    /// The first of these with the role whose name begins so.
    [[nodiscard]] std::optional<AccessibleObject> find(std::string_view role, std::string_view name = "");
    /// The names of all of these with the role.
    [[nodiscard]] std::vector<std::string> names(std::string_view role);
    /// "role name" of what has the focus, but rows: a part rather than its document. Empty for nothing.
    [[nodiscard]] std::string focus();

    /// Does the first action of an object.
    bool press(const AccessibleObject& object);
    [[nodiscard]] std::string text(const AccessibleObject& object);
    bool setText(const AccessibleObject& object, const std::string& text);
    /// The selected part of its text.
    [[nodiscard]] std::string selection(const AccessibleObject& object);
    [[nodiscard]] DesktopRectangle extents(const AccessibleObject& object);

    /// What has been told to screen readers since the last call: the names of messages that came up.
    [[nodiscard]] std::vector<std::string> takeMessages();

    /// All that is showing, a line each.
    [[nodiscard]] std::string described();

private:
    void collect(platform::Operation& operation, const platform::ObjectReference& object,
                 std::vector<AccessibleObject>& into);
    [[nodiscard]] platform::Operation operation();
    static void onSignal(GDBusConnection* connection, const gchar* sender, const gchar* path,
                         const gchar* interface, const gchar* name, GVariant* parameters, gpointer self);

    platform::AccessibilityBus bus_;
    platform::Applications applications_;
    std::int64_t process_;
    guint subscription_ = 0;
    std::vector<platform::ObjectReference> appeared_;
};

} // namespace quillmoth::test
