#pragma once

#include "tests/desktop/support/ProgramTest.h"

#include <memory>
#include <string>
#include <string_view>

namespace quillmoth::test {

/// The running program with an editor in front. Each test begins with the panel closed and the editor's first
/// line selected.
class PanelSession : public ProgramTest {
public:
    static constexpr const char* kFirstLine = "Their going to the the meeting.";
    static constexpr const char* kEditorText = "Their going to the the meeting.\nThis line stays.\n";
    static constexpr const char* kContextFound = "Context found press esc to remove context";

    static void SetUpTestSuite();

protected:
    void SetUp() override;
    void TearDown() override;

    static FrontEditor& editor() { return session().editor(); }

    /// By Escape, as often as it takes.
    static void closePanel();
    static void deselect();

    static bool isPinned() { return await("check box", "On top").has(ATSPI_STATE_CHECKED); }

    /// Returns when the command field has it.
    static void typeCommand(const std::string& command);
    static void send(const std::string& command);
    /// Sends a command and waits for the end of the answer.
    static void converse(const std::string& command, const std::string& answer);

    // The next answers
    static void answerWith(const std::vector<std::string>& pieces);
    /// Begins with a text and then waits for `finishAnswer`.
    static void answerSlowly(const std::string& beginning, const std::string& end);
    static void finishAnswer();

    static bool isSelected(std::string_view row);
    /// What the test has had opened, a line each.
    static std::string openedLinks();

    /// The editor is the active window with the keyboard's focus, and has what was selected.
    static void expectFrontKept(const std::string& selection = kFirstLine);
    static bool editorHolds(const std::string& text);

private:
    static inline std::shared_ptr<Latch> latch_;
    static inline std::uint32_t inputFocus_ = 0;
};

} // namespace quillmoth::test
