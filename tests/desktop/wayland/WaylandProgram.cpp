#include "tests/desktop/wayland/WaylandProgram.h"

#include <linux/input-event-codes.h>

#include <filesystem>
#include <fstream>
#include <iostream>

namespace quillmoth::test {

std::unique_ptr<WaylandDesktop> WaylandProgram::desktop_;

void WaylandProgram::startDesktop(std::unique_ptr<WaylandDesktop> desktop) {
    desktop_ = std::move(desktop);
    session().server().answer("/api/v1/chat/completions", jsonAnswer(200, chatResponse("A topic")));
    session().server().answer("/api/v1/chat/completions/stream", chatStream({kAnswer}));
}

void WaylandProgram::TearDown() {
    if (!desktop_)
        return;
    if (HasFailure()) {
        std::filesystem::create_directories("screenshots");
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        desktop_->saveScreenshot(std::string("screenshots/") + test->test_suite_name() + '-' + test->name() +
                                 ".png");
        std::cerr << session().output() << session().shown().described();
    }
    if (isOpen())
        pressHotKey();
    EXPECT_TRUE(soon([] { return !isOpen(); }));
    endEditor();
}

bool WaylandProgram::soon(const std::function<bool()>& condition) {
    return holdsWithin(std::chrono::seconds(10), condition);
}

void WaylandProgram::startProgram(const nlohmann::json& defaults) {
    session().kill();
    session().writeDefaults(defaults);
    session().start();
}

void WaylandProgram::startEditor(const std::vector<std::string>& command,
                                 ProgramSession::Environment environment) {
    endEditor();
    const std::string path = session().path("letter.txt");
    std::ofstream(path) << bothLines(kFirstLine);
    environment.emplace_back("GSETTINGS_BACKEND", "memory");
    environment.emplace_back("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
    std::vector<std::string> started = command;
    started.push_back(path);
    editor_.emplace(started, ChildOptions{.environment = std::move(environment)});
    shownEditor_.emplace(editor_->processIdentifier());
    ASSERT_TRUE(soon([this] {
        const auto frame = shownEditor_->find("frame");
        return frame && frame->has(ATSPI_STATE_ACTIVE) && text() == bothLines(kFirstLine);
    })) << editor_->output()
        << shownEditor_->described();
}

void WaylandProgram::endEditor() {
    shownEditor_.reset();
    editor_.reset();
}

std::string WaylandProgram::text() const {
    const auto element = shownEditor_ ? shownEditor_->find("text") : std::nullopt;
    return element ? element->text() : "";
}

std::string WaylandProgram::bothLines(const std::string& first) {
    return first + '\n' + kSecondLine;
}

void WaylandProgram::selectFirstLine() {
    input().chord({KEY_LEFTCTRL, KEY_HOME});
    input().chord({KEY_LEFTSHIFT, KEY_END});
    ASSERT_TRUE(soon([this] { return shownEditor_->find("text")->selection() == kFirstLine; }));
}

bool WaylandProgram::isOpen() {
    return session().shown().find("text", "Command").has_value();
}

bool WaylandProgram::hasKeyboard() {
    const auto field = session().shown().find("text", "Command");
    return field && field->isFocused();
}

std::string WaylandProgram::command() {
    const auto field = session().shown().find("text", "Command");
    return field ? field->text() : "";
}

DesktopRectangle WaylandProgram::place() {
    return session().shown().find("dialog")->bounds();
}

void WaylandProgram::pressHotKey() {
    input().chord({KEY_LEFTALT, KEY_SPACE});
}

void WaylandProgram::openPanel() {
    pressHotKey();
    ASSERT_TRUE(soon(hasKeyboard));
}

void WaylandProgram::ask() {
    input().type("improve this");
    ASSERT_TRUE(soon([] { return command() == "improve this"; })) << command();
    input().tapKey(KEY_ENTER);
    ASSERT_TRUE(soon([] { return session().shown().shows(kAnswer); }));
}

void WaylandProgram::replaceFirstLine(const std::string& picture) {
    selectFirstLine();
    openPanel();
    EXPECT_TRUE(soon([] { return session().shown().shows("Context found"); }));
    ask();
    EXPECT_EQ(text(), bothLines(kFirstLine));
    if (!picture.empty())
        desktop_->saveScreenshot(picture);
    input().chord({KEY_LEFTCTRL, KEY_ENTER});
    EXPECT_TRUE(soon([this] { return text() == bothLines(kAnswer); })) << text();
}

} // namespace quillmoth::test
