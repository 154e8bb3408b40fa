#pragma once

#include "tests/desktop/demonstration/DemonstrationDesktop.h"
#include "tests/desktop/panel/AccessibleProgram.h"
#include "tests/support/ScriptedChatServer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace quillmoth::test {

/// The running program on a desktop with a text editor in front and a chat server behind, one for all tests
/// of a suite. Each test begins with the panel closed and the editor's first line selected.
class PanelSession : public testing::Test {
public:
    static constexpr const char* kFirstLine = "Their going to the the meeting.";
    static constexpr const char* kEditorText = "Their going to the the meeting.\nThis line stays.\n";
    static constexpr const char* kContextFound = "Context found press esc to remove context";

    static void SetUpTestSuite();
    static void TearDownTestSuite();

protected:
    /// The halves of SetUpTestSuite.
    static void startDesktop();
    static void startProgram();

    void SetUp() override;
    void TearDown() override;

    static VirtualDesktop& desktop() { return scene_->desktop(); }

    static DemonstrationDesktop& scene() { return *scene_; }

    static DesktopInput& input() { return scene_->input(); }

    static AccessibleProgram& panel() { return *panel_; }

    static AccessibleProgram& editor() { return *editor_; }

    static ScriptedChatServer& server() { return *server_; }

    // The user's ways
    static void pressHotKey();
    /// By the hot key; waits until the panel has the keyboard.
    static void openPanel();
    /// By Escape, as often as it takes.
    static void closePanel();
    /// One line of the editor becomes the selection.
    static void selectFirstLine();
    static void deselect();
    /// In the middle of an object.
    static void click(const AccessibleObject& object, int clicks = 1);
    static void hover(const AccessibleObject& object);
    /// Types a command and sends it; `answer` streams back. Waits for its end.
    static void converse(const std::string& command, const std::string& answer);

    // The service's ways
    /// The next answers.
    static void answerWith(const std::string& text);
    /// The next answer begins with a text and then waits for `finishAnswer`.
    static void answerSlowly(const std::string& beginning, const std::string& end);
    static void finishAnswer();
    static void answerWithStatus(int status);

    // What is seen
    static bool isOpen() { return scene_->isPanelVisible(); }

    static bool closes();
    /// Where an object with the role whose name begins so comes up; the test fails where none does.
    static AccessibleObject await(std::string_view role, std::string_view name = "");
    static bool shows(std::string_view role, std::string_view name);
    /// Whether it goes within the usual time.
    static bool goes(std::string_view role, std::string_view name);
    static bool isSelected(std::string_view row);
    static bool isFocused(std::string_view object);
    static std::string command();
    static std::string clipboard();
    /// What the test has had opened, a line each.
    static std::string openedLinks();
    /// The value of a key in the defaults store, as it is written there; empty for none.
    static std::string stored(const std::string& key);
    static std::uint32_t pixel(int x, int y);
    static std::uint32_t pixelIn(const AccessibleObject& object, int fromLeft, int fromTop);

    /// The editor is the active window with the keyboard's focus, and has what was selected.
    static void expectFrontKept(const std::string& selection = kFirstLine);

private:
    static void answerStreams(ScriptedChatServer::Handler handler);

    static inline std::unique_ptr<ScriptedChatServer> server_;
    static inline std::unique_ptr<DemonstrationDesktop> scene_;
    static inline std::unique_ptr<AccessibleProgram> panel_;
    static inline std::unique_ptr<AccessibleProgram> editor_;
    static inline std::shared_ptr<Latch> latch_;
    static inline std::uint32_t inputFocus_ = 0;
};

/// Waits for the usual time.
[[nodiscard]] bool soon(const std::function<bool()>& condition);

} // namespace quillmoth::test
