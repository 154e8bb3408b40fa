#pragma once

#include "tests/desktop/support/ProgramSession.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>

namespace quillmoth::test {

/// Waits as long as a loaded machine may take.
[[nodiscard]] bool soon(const std::function<bool()>& condition);

/// What tests of the running program do and look at. All of a process share one desktop. A test that fails
/// leaves a picture of it, and prints what was on screen.
class ProgramTest : public testing::Test {
protected:
    /// Makes the session that the tests of the process share; false where there is one.
    static bool startSession(int height = 800);
    static ProgramSession& session();

    void TearDown() override;

    static VirtualDesktop& desktop() { return session().desktop(); }

    static DesktopInput& input() { return session().input(); }

    static DesktopWindows& windows() { return session().windows(); }

    static ScriptedChatServer& server() { return session().server(); }

    static AccessibleProgram& shown() { return session().shown(); }

    /// Waits, and fails the test where it does not come about.
    static bool eventually(const std::string& what, const std::function<bool()>& condition);

    /// Waits for what has the role and a name that begins so. Throws where it does not come up.
    static AccessibleElement await(std::string_view role, std::string_view name = "");

    static bool has(std::string_view role, std::string_view name = "") {
        return shown().find(role, name).has_value();
    }

    /// Whether it goes within the usual time.
    static bool goes(std::string_view role, std::string_view name);

    static bool shows(std::string_view text) { return shown().shows(text); }

    /// Whether that comes to have the keyboard, a part rather than its document: "role name", or how it
    /// begins.
    static bool isFocused(std::string_view object);

    // The user's hands
    static void pointAt(const DesktopRectangle& place);

    static void hover(const AccessibleElement& element) { pointAt(element.bounds()); }

    /// In the middle.
    static void click(const AccessibleElement& element, int clicks = 1);
    static void drag(int fromX, int fromY, int byX, int byY);

    static void pressHotKey() { session().pressHotKey(); }

    /// To be called behind a start of the program, which may be told of before it has its hot key: until then
    /// the window manager opens a menu by that.
    static void awaitHotKey();
    /// By the hot key; waits until the panel has the keyboard.
    static void openPanel();

    static bool isOpen() { return session().panelWindow() != 0; }

    static bool closes();
    /// What stands in the command field.
    static std::string command();

    static std::string clipboard();
    /// Whether the colour, as 0xRRGGBB, is anywhere in that part of the screen.
    static bool hasColor(const DesktopRectangle& place, std::uint32_t color);
};

} // namespace quillmoth::test
