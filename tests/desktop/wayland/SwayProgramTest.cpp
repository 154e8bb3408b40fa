// The main job in a session of sway, driven and looked at from outside.

#include "tests/desktop/wayland/SwayDesktop.h"

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <filesystem>
#include <fstream>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

constexpr const char* kFirstLine = "the quick brown fox";
constexpr const char* kSecondLine = "stays as it is";
constexpr const char* kAnswer = "A better line.";

class SwayProgram : public testing::Test {
protected:
    static void SetUpTestSuite() {
        desktop_ = new SwayDesktop;
        desktop_->program().server().answer("/api/v1/chat/completions",
                                            jsonAnswer(200, chatResponse("A topic")));
        desktop_->program().server().answer("/api/v1/chat/completions/stream", chatStream({kAnswer}));
    }

    static void TearDownTestSuite() {
        delete desktop_;
        desktop_ = nullptr;
    }

    void SetUp() override {
        startProgram();
        startEditor({{"GDK_BACKEND", "wayland"}});
    }

    void startEditor(ProgramSession::Environment environment) {
        shownEditor_.reset();
        editor_.reset();
        const std::string path = session().path("letter.txt");
        std::ofstream(path) << kFirstLine << '\n' << kSecondLine;
        environment.emplace_back("GSETTINGS_BACKEND", "memory");
        editor_.emplace(std::vector<std::string>{"mousepad", "--disable-server", path},
                        ChildOptions{.environment = std::move(environment)});
        shownEditor_.emplace(editor_->processIdentifier());
        ASSERT_TRUE(soon([this] {
            return (desktop_->front() == "mousepad" || desktop_->front() == "Mousepad") && !text().empty();
        })) << editor_->output();
    }

    void TearDown() override {
        if (HasFailure()) {
            std::filesystem::create_directories("screenshots");
            const auto* test = testing::UnitTest::GetInstance()->current_test_info();
            SwayDesktop::saveScreenshot(std::string("screenshots/sway-") + test->name() + ".png");
            std::cerr << session().output() << session().shown().described();
        }
        if (isOpen())
            input().chord({KEY_LEFTALT, KEY_SPACE});
        EXPECT_TRUE(soon([] { return !isOpen(); }));
        shownEditor_.reset();
        editor_.reset();
    }

    static void startProgram(const nlohmann::json& defaults = nlohmann::json::object()) {
        session().kill();
        session().writeDefaults(defaults);
        session().start();
    }

    static ProgramSession& session() { return desktop_->program(); }

    static WaylandInput& input() { return desktop_->input(); }

    static bool soon(const std::function<bool()>& condition) { return holdsWithin(10s, condition); }

    [[nodiscard]] std::string text() const {
        const auto element = shownEditor_->find("text");
        return element ? element->text() : "";
    }

    void selectFirstLine() {
        input().chord({KEY_LEFTCTRL, KEY_HOME});
        input().chord({KEY_LEFTSHIFT, KEY_END});
        ASSERT_TRUE(soon([this] { return shownEditor_->find("text")->selection() == kFirstLine; }));
    }

    static bool isOpen() { return session().shown().find("text", "Command").has_value(); }

    static bool hasKeyboard() {
        const auto field = session().shown().find("text", "Command");
        return field && field->isFocused();
    }

    static std::string command() {
        const auto field = session().shown().find("text", "Command");
        return field ? field->text() : "";
    }

    static DesktopRectangle place() { return session().shown().find("dialog")->bounds(); }

    static void openPanel() {
        input().chord({KEY_LEFTALT, KEY_SPACE});
        ASSERT_TRUE(soon(hasKeyboard));
    }

    static void ask() {
        input().type("improve this");
        ASSERT_TRUE(soon([] { return command() == "improve this"; })) << command();
        input().tapKey(KEY_ENTER);
        ASSERT_TRUE(soon([] { return session().shown().shows(kAnswer); }));
    }

    void replaceFirstLine() {
        selectFirstLine();
        openPanel();
        EXPECT_TRUE(soon([] { return session().shown().shows("Context found"); }));
        ask();
        EXPECT_EQ(text(), std::string(kFirstLine) + '\n' + kSecondLine);
        SwayDesktop::saveScreenshot("sway-answer.png");
        input().chord({KEY_LEFTCTRL, KEY_ENTER});
        EXPECT_TRUE(soon([this] { return text() == std::string(kAnswer) + '\n' + kSecondLine; })) << text();
    }

    static SwayDesktop* desktop_;
    std::optional<ChildProcess> editor_;
    std::optional<AccessibleProgram> shownEditor_;
};

SwayDesktop* SwayProgram::desktop_ = nullptr;

} // namespace

TEST_F(SwayProgram, TheSelectionIsReplacedByTheAnswer) {
    replaceFirstLine();
    EXPECT_FALSE(isOpen());
}

TEST_F(SwayProgram, WhatIsOnTheClipboardIsThereAgainInAllItsForms) {
    const ChildProcess owner({"wl-copy", "--type", "text/html", "<b>kept</b>"});
    const auto html = [] { return runChild({"wl-paste", "--no-newline", "--type", "text/html"}, 2s).output; };
    ASSERT_TRUE(soon([&] { return html() == "<b>kept</b>"; }));
    replaceFirstLine();
    EXPECT_TRUE(soon([&] { return html() == "<b>kept</b>"; })) << html();
    // One step to the editor's own undo, as only a paste is.
    input().chord({KEY_LEFTCTRL, KEY_Z});
    EXPECT_TRUE(soon([this] { return text() == std::string(kFirstLine) + '\n' + kSecondLine; })) << text();
}

TEST_F(SwayProgram, TheAlternativeMethodCopiesAndPutsBackWhatWasThere) {
    startProgram({{"useCopyHack", true}});
    const ChildProcess owner({"wl-copy", "--type", "text/html", "<i>kept</i>"});
    selectFirstLine();
    openPanel();
    EXPECT_TRUE(soon([] { return session().shown().shows("Context found"); }));
    EXPECT_EQ(runChild({"wl-paste", "--no-newline", "--type", "text/html"}, 2s).output, "<i>kept</i>");
}

TEST_F(SwayProgram, ATerminalIsReadAndNotPastedInto) {
    ChildProcess terminal({"foot", "--app-id=foot", "sh", "-c", "printf selected; exec cat > typed"},
                          {.environment = {{"LC_ALL", "C.UTF-8"}}});
    ASSERT_TRUE(soon([] { return desktop_->front() == "foot"; }));
    ASSERT_TRUE(soon([] {
        // A double click selects a word, a third one the line.
        const DesktopRectangle window = desktop_->frontRectangle();
        input().click(window.x + 20, window.y + 8, 2);
        return holdsWithin(1s, [] { return SwayDesktop::clipboard(true).starts_with("selected"); });
    }));
    openPanel();
    EXPECT_TRUE(soon([] { return session().shown().shows("Context found"); }));
    SwayDesktop::saveScreenshot("sway-terminal.png");
    ask();
    input().chord({KEY_LEFTCTRL, KEY_ENTER});
    EXPECT_TRUE(soon([] { return session().shown().shows("terminal"); }));
    SwayDesktop::saveScreenshot("sway-terminal-told.png");
}

TEST_F(SwayProgram, AProgramOnXwaylandIsServedAsAnyOther) {
    startEditor({{"GDK_BACKEND", "x11"}, {"DISPLAY", desktop_->display()}});
    if (!HasFatalFailure())
        replaceFirstLine();
}

TEST_F(SwayProgram, TheDiagnosisTellsWhatWorksAndTheProgramQuits) {
    const std::string page = session().run({"--diagnose"}).output;
    for (const char* line :
         {"served by sway", "Alt+Space, active", "mousepad (gtk)", "Write-back: through accessibility"})
        EXPECT_NE(page.find(line), std::string::npos) << line << " in\n" << page;
    EXPECT_EQ(session().quit(), 0);
    startProgram();
}

TEST_F(SwayProgram, APressBesideThePanelClosesItAndEscapeToo) {
    const auto closesBy = [](const std::string& way, const std::function<void()>& act) {
        openPanel();
        SwayDesktop::saveScreenshot("sway-panel.png");
        act();
        EXPECT_TRUE(soon([] { return !isOpen(); })) << way;
    };
    closesBy("a press", [] { input().click(20, 780); });
    closesBy("Escape", [] {
        for (int press = 0; press < 3 && isOpen(); ++press)
            input().tapKey(KEY_ESC);
    });
    closesBy("another workspace", [] { desktop_->command("workspace 2"); });
    desktop_->command("workspace 1");
    input().type("x");
    EXPECT_TRUE(soon([this] { return text().find('x') != std::string::npos; })) << text();
}

TEST_F(SwayProgram, ThePanelIsMovedAndKeepsItsPlace) {
    openPanel();
    const DesktopRectangle before = place();
    // Between the row of keys and the edge.
    input().drag(before.x + before.width / 2, before.y + 4, 0, 0);
    input().drag(before.x + 20, before.y + before.height - 12, 150, 60);
    EXPECT_TRUE(soon([&] { return place().x == before.x + 150 && place().y == before.y + 60; }))
        << place().x << ',' << place().y;
    input().click(20, 780);
    ASSERT_TRUE(soon([] { return !isOpen(); }));
    openPanel();
    EXPECT_EQ(place().x, before.x + 150);
}

TEST_F(SwayProgram, ThePinnedPanelLeavesTheKeyboardToAPressBesideIt) {
    openPanel();
    input().chord({KEY_LEFTCTRL, KEY_T});
    ASSERT_TRUE(soon([] { return session().shown().find("check box", "On top")->has(ATSPI_STATE_CHECKED); }));
    input().click(20, 780);
    EXPECT_TRUE(soon([] { return !hasKeyboard(); }));
    ASSERT_TRUE(soon(isOpen));
    input().type("y");
    EXPECT_TRUE(soon([this] { return text().find('y') != std::string::npos; })) << text();
    const DesktopRectangle panel = place();
    input().click(panel.x + panel.width / 2, panel.y + 25);
    EXPECT_TRUE(soon(hasKeyboard));
    input().type("z");
    EXPECT_TRUE(soon([] { return command() == "z"; })) << command();
    input().chord({KEY_LEFTCTRL, KEY_T});
    input().chord({KEY_LEFTCTRL, KEY_A});
    input().tapKey(KEY_BACKSPACE);
}

TEST_F(SwayProgram, EachPressOfTheHotKeyCountsOnce) {
    constexpr int kPresses = 20;
    int arrived = 0;
    for (int press = 1; press <= kPresses; ++press) {
        const bool opens = press % 2 == 1;
        input().chord({KEY_LEFTALT, KEY_SPACE});
        arrived += soon([opens] { return opens ? hasKeyboard() : !isOpen(); }) ? 1 : 0;
    }
    EXPECT_EQ(arrived, kPresses);
    EXPECT_EQ(text(), std::string(kFirstLine) + '\n' + kSecondLine);
}

TEST_F(SwayProgram, AHeldHotKeyOpensOnceItIsReleased) {
    input().pressKey(KEY_LEFTALT);
    input().pressKey(KEY_SPACE);
    letPass(1200ms);
    EXPECT_FALSE(isOpen());
    input().releaseKey(KEY_SPACE);
    input().releaseKey(KEY_LEFTALT);
    EXPECT_TRUE(soon(hasKeyboard));
}

TEST_F(SwayProgram, AConfigurationThatIsReadAgainTakesNoHotKeyButTheUsersOwn) {
    desktop_->configure("# nothing new");
    // No hand is quicker.
    letPass(100ms);
    openPanel();
    input().chord({KEY_LEFTALT, KEY_SPACE});
    ASSERT_TRUE(soon([] { return !isOpen(); }));
    desktop_->configure("set $mod Mod1\nbindsym $mod+space mark taken");
    input().chord({KEY_LEFTALT, KEY_SPACE});
    EXPECT_TRUE(soon([] { return desktop_->marks() == "taken"; }));
    EXPECT_FALSE(isOpen());
    desktop_->configure("unbindsym $mod+space");
    letPass(100ms);
    openPanel();
}

} // namespace quillmoth::test
