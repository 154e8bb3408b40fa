#include "tests/desktop/windows/WindowsSession.h"

#include <linux/input-event-codes.h>

namespace quillmoth::test {

namespace {

using nlohmann::json;

constexpr const char* kChat = "/v1/chat/completions";

} // namespace

void WindowsSession::SetUp() {
    session().beginAnew();
    server().answer(kChat, chatStream({"The ", "answer."}));
    writeDefaults(json::object());
}

void WindowsSession::TearDown() {
    ProgramTest::TearDown();
    session().kill();
    waitFor([] { return windows().managedWindows().empty(); });
}

void WindowsSession::writeDefaults(const json& values) {
    json all = {{"openAIBaseURL", server().baseURL()}};
    all.update(values);
    session().writeDefaults(all);
}

json WindowsSession::presets() {
    return json::parse(session().readFile(ProgramSession::kPresets), nullptr, false);
}

void WindowsSession::start(const std::vector<std::string>& arguments) {
    session().start(arguments);
    ASSERT_TRUE(session().isRunning()) << session().output();
}

void WindowsSession::run(const std::vector<std::string>& arguments) {
    const ChildResult result = session().run(arguments);
    EXPECT_EQ(result.exitCode, 0) << result.output;
}

void WindowsSession::awaitWindow(const std::string& title) {
    eventually("the window \"" + title + "\" has the keyboard", [&] {
        const auto window = windows().windowTitled(title);
        return window && windows().activeWindow() == *window && windows().inputFocus() == *window;
    });
}

void WindowsSession::closeWindow(const std::string& title) {
    input().chord({KEY_LEFTCTRL, KEY_W});
    eventually("Ctrl+W closes \"" + title + '"', [&] { return !hasWindow(title); });
}

void WindowsSession::awaitStored(const char* key, const json& value) {
    eventually(std::string(key) + " is stored as " + value.dump(),
               [&] { return defaults().value(key, json()) == value; });
}

void WindowsSession::awaitText(const std::string& text) {
    eventually("it says: " + text, [&] { return shows(text); });
}

void WindowsSession::closePanelByHotKey() {
    pressHotKey();
    eventually("the hot key closes the panel", [] { return !isOpen(); });
}

std::uint32_t WindowsSession::openMenu() {
    return windows().visiblePopupOf(static_cast<std::uint32_t>(session().process()));
}

void WindowsSession::ask(const std::string& command) {
    const std::size_t before = chatRequests().size();
    openPanel();
    input().type(command);
    input().tapKey(KEY_ENTER);
    eventually("the question is sent", [&] { return chatRequests().size() > before; });
    awaitText("answer.");
    closePanelByHotKey();
}

std::vector<ScriptedRequest> WindowsSession::chatRequests() {
    std::vector<ScriptedRequest> result;
    for (auto& request : server().requests())
        if (request.path == kChat && json::parse(request.body, nullptr, false).value("stream", false))
            result.push_back(std::move(request));
    return result;
}

} // namespace quillmoth::test
