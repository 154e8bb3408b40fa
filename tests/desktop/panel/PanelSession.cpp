#include "tests/desktop/panel/PanelSession.h"

#include <linux/input-event-codes.h>

#include <cstdlib>
#include <filesystem>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

constexpr const char* kOpenedLinks = "opened-links";
constexpr const char* kStream = "/api/v1/chat/completions/stream";

constexpr const char* kPresets = R"([
    {"emoji": "🔤", "name": "Fix the grammar", "prompt": "Fix this: {selected text}", "promptType": "context"},
    {"emoji": "✂️", "name": "Make it shorter", "prompt": "Shorten: {selected text}", "promptType": "context"},
    {"emoji": "📣", "name": "Call to action", "prompt": "A call to [whom] for [what]!",
     "promptType": "nonContext"}])";

constexpr const char* kHistory = R"([
    {"topic": "📌 Conversation 1", "message": [], "created": 1700000000},
    {"topic": "📌 Conversation 2", "created": 1700000000,
     "message": [{"role": "user", "content": "question 2"},
                 {"role": "assistant", "content": "stored answer 2"}]}])";

/// Stands in for the desktop's opener of links.
void installOpener(const ProgramSession& session) {
    session.writeFile("bin/xdg-open", "#!/bin/sh\necho \"$1\" >> \"$HOME/opened-links\"\n");
    std::filesystem::permissions(session.path("bin/xdg-open"), std::filesystem::perms::owner_all);
    const char* path = std::getenv("PATH");                                 // NOLINT(concurrency-mt-unsafe)
    setenv("PATH", (session.path("bin:") + (path ? path : "")).c_str(), 1); // NOLINT(concurrency-mt-unsafe)
}

} // namespace

void PanelSession::SetUpTestSuite() {
    if (!startSession())
        return;
    server().answer("/api/v1/chat/completions", jsonAnswer(200, chatResponse("🧪 A topic")));
    session().writeFile(ProgramSession::kPresets, kPresets);
    session().writeFile(ProgramSession::kHistory, kHistory);
    installOpener(session());
    session().startEditor(kEditorText);
    inputFocus_ = windows().inputFocus();
    session().start();
    awaitHotKey();
}

void PanelSession::SetUp() {
    answerWith({"An answer."});
    input().movePointer(5, 795);
    std::filesystem::remove(session().path(kOpenedLinks));
    editor().selectFirstLine();
    ASSERT_TRUE(soon([] { return editor().selection() == kFirstLine; })) << editor().selection();
}

void PanelSession::TearDown() {
    ProgramTest::TearDown();
    closePanel();
    (void)shown().takeMessages();
}

void PanelSession::closePanel() {
    // A conversation outlives its panel.
    if (!isOpen())
        openPanel();
    for (int step = 0; step < 12 && isOpen(); ++step) {
        input().tapKey(KEY_ESC);
        waitFor([] { return !isOpen(); }, 150ms);
    }
    EXPECT_FALSE(isOpen());
}

void PanelSession::typeCommand(const std::string& command) {
    input().type(command);
    EXPECT_TRUE(soon([&] { return ProgramTest::command() == command; })) << ProgramTest::command();
}

void PanelSession::send(const std::string& command) {
    typeCommand(command);
    input().tapKey(KEY_ENTER);
}

void PanelSession::converse(const std::string& command, const std::string& answer) {
    answerWith({answer});
    send(command);
    (void)await("push button", "New chat");
}

void PanelSession::answerWith(const std::vector<std::string>& pieces) {
    server().answer(kStream, chatStream(pieces));
}

bool PanelSession::isSelected(std::string_view row) {
    return soon([&] {
        const auto found = shown().find("list item", row);
        return found && found->isSelected();
    });
}

std::string PanelSession::openedLinks() {
    return session().readFile(kOpenedLinks);
}

void PanelSession::expectFrontKept() {
    EXPECT_TRUE(editor().isActive());
    EXPECT_EQ(windows().inputFocus(), inputFocus_);
    EXPECT_EQ(editor().selection(), kFirstLine);
}

bool PanelSession::editorHolds(const std::string& text) {
    return soon([&] { return editor().text() == text; });
}

} // namespace quillmoth::test
