#include "tests/desktop/panel/PanelSession.h"

#include <linux/input-event-codes.h>

#include <cstdlib>
#include <filesystem>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;
using nlohmann::json;

constexpr const char* kOpenedLinks = "opened-links";

json presets() {
    json list = json::array();
    const auto add = [&](const char* emoji, const std::string& name, const char* prompt, const char* type) {
        list.push_back({{"emoji", emoji}, {"name", name}, {"prompt", prompt}, {"promptType", type}});
    };
    add("🔤", "Fix the grammar", "Fix this: {selected text}", "context");
    add("✂️", "Make it shorter", "Shorten this: {selected text}", "context");
    add("📧", "Write an email", "Write an email about moths", "nonContext");
    add("📣", "Call to action", "A call to [whom] for [what]!", "nonContext");
    add("💡", "Brainstorm ideas", "Ideas", "nonContext");
    for (int number = 1; number <= 30; ++number)
        add("🔢", "Preset number " + std::to_string(number), "p", "nonContext");
    return list;
}

json conversations() {
    json list = json::array();
    for (int i = 1; i <= 12; ++i) {
        const std::string number = std::to_string(i);
        list.push_back({{"topic", "📌 Conversation " + number},
                        {"message",
                         {{{"role", "user"}, {"content", "question " + number}},
                          {{"role", "assistant"}, {"content", "stored answer " + number}}}},
                        {"created", 1700000000}});
    }
    return list;
}

/// Stands in for the desktop's opener of links.
void installOpener(const ProgramSession& session) {
    session.writeFile("bin/xdg-open", "#!/bin/sh\necho \"$1\" >> \"$HOME/opened-links\"\n");
    std::filesystem::permissions(session.path("bin/xdg-open"), std::filesystem::perms::owner_all);
    const char* path = std::getenv("PATH");                                 // NOLINT(concurrency-mt-unsafe)
    setenv("PATH", (session.path("bin:") + (path ? path : "")).c_str(), 1); // NOLINT(concurrency-mt-unsafe)
}

void answerStreams(ScriptedChatServer& server, ScriptedAnswer answer) {
    server.answer("/api/v1/chat/completions/stream", std::move(answer));
}

} // namespace

void PanelSession::SetUpTestSuite() {
    if (!startSession())
        return;
    server().answer("/api/v1/chat/completions", jsonAnswer(200, chatResponse("🧪 A topic")));
    session().writeFile(ProgramSession::kPresets, presets().dump());
    session().writeFile(ProgramSession::kHistory, conversations().dump());
    installOpener(session());
    session().startEditor(kEditorText);
    inputFocus_ = windows().inputFocus();
    session().start();
    awaitHotKey();
}

void PanelSession::SetUp() {
    answerWith("An answer.");
    input().movePointer(5, 795);
    std::filesystem::remove(session().path(kOpenedLinks));
    editor().selectFirstLine();
    ASSERT_TRUE(soon([] { return editor().selection() == kFirstLine; })) << editor().selection();
}

void PanelSession::TearDown() {
    ProgramTest::TearDown();
    finishAnswer();
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

void PanelSession::deselect() {
    editor().deselect();
    ASSERT_TRUE(soon([] { return editor().selection().empty(); }));
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
    answerWith(answer);
    send(command);
    (void)await("push button", "New chat");
}

void PanelSession::answerWith(const std::string& text) {
    answerStreams(server(), chatStream({text}));
}

void PanelSession::answerSlowly(const std::string& beginning, const std::string& end) {
    latch_ = makeLatch();
    ScriptedAnswer answer = chatStream({beginning, end});
    answer.steps.insert(answer.steps.begin() + 1, WaitFor{latch_});
    answerStreams(server(), answer);
}

void PanelSession::finishAnswer() {
    if (latch_)
        latch_->release();
}

void PanelSession::answerWithStatus(int status) {
    answerStreams(server(), jsonAnswer(status, "{}"));
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

bool PanelSession::comesToStore(const std::string& key, const json& value) {
    return soon([&] { return session().defaults().value(key, json()) == value; });
}

void PanelSession::expectFrontKept(const std::string& selection) {
    EXPECT_TRUE(editor().isActive());
    EXPECT_EQ(windows().inputFocus(), inputFocus_);
    EXPECT_EQ(editor().selection(), selection);
}

bool PanelSession::editorHolds(const std::string& text) {
    return soon([&] { return editor().text() == text; });
}

} // namespace quillmoth::test
