#pragma once

#include "tests/desktop/support/ProgramTest.h"

#include <string>
#include <string_view>

namespace quillmoth::test {

/// The running program with an editor in front. Each test begins with the panel closed and the editor's first
/// line selected.
class PanelSession : public ProgramTest {
public:
    static constexpr const char* kFirstLine = "Their going to the the meeting.";
    static constexpr const char* kEditorText = "Their going to the the meeting.\nThis line stays.\n";

    static void SetUpTestSuite();

protected:
    void SetUp() override;
    void TearDown() override;

    static FrontEditor& editor() { return session().editor(); }

    /// By Escape, as often as it takes.
    static void closePanel();

    static bool isPinned() { return await("check box", "On top").has(ATSPI_STATE_CHECKED); }

    /// Returns when the command field has it.
    static void typeCommand(const std::string& command);
    static void send(const std::string& command);
    /// Sends a command and waits for the end of the answer.
    static void converse(const std::string& command, const std::string& answer);

    /// The next answers.
    static void answerWith(const std::vector<std::string>& pieces);

    static bool isSelected(std::string_view row);
    /// What the test has had opened, a line each.
    static std::string openedLinks();

    /// The editor is the active window with the keyboard's focus, and its first line is selected.
    static void expectFrontKept();
    static bool editorHolds(const std::string& text);

private:
    static inline std::uint32_t inputFocus_ = 0;
};

} // namespace quillmoth::test
