// The main job in a session of sway, driven and looked at from outside.

#include "tests/desktop/wayland/SwayProgram.h"

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

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
    EXPECT_TRUE(soon([this] { return text() == bothLines(kFirstLine); })) << text();
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
    ASSERT_TRUE(soon([] { return sway_->front() == "foot"; }));
    ASSERT_TRUE(soon([] {
        // A double click selects a word, a third one the line.
        const DesktopRectangle window = sway_->frontRectangle();
        input().click(window.x + 20, window.y + 8, 2);
        return holdsWithin(1s, [] { return SwaySession::clipboard(true).starts_with("selected"); });
    }));
    openPanel();
    EXPECT_TRUE(soon([] { return session().shown().shows("Context found"); }));
    SwaySession::saveScreenshot("sway-terminal.png");
    ask();
    input().chord({KEY_LEFTCTRL, KEY_ENTER});
    EXPECT_TRUE(soon([] { return session().shown().shows("terminal"); }));
    SwaySession::saveScreenshot("sway-terminal-told.png");
}

TEST_F(SwayProgram, AProgramOnXwaylandIsServedAsAnyOther) {
    startEditor({"mousepad", "--disable-server"}, {{"GDK_BACKEND", "x11"}, {"DISPLAY", sway_->display()}});
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
        SwaySession::saveScreenshot("sway-panel.png");
        act();
        EXPECT_TRUE(soon([] { return !isOpen(); })) << way;
    };
    closesBy("a press", [] { input().click(20, 780); });
    closesBy("Escape", [] {
        for (int press = 0; press < 3 && isOpen(); ++press)
            input().tapKey(KEY_ESC);
    });
    closesBy("another workspace", [] { sway_->command("workspace 2"); });
    sway_->command("workspace 1");
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
    EXPECT_EQ(text(), bothLines(kFirstLine));
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
    sway_->configure("# nothing new");
    // No hand is quicker.
    letPass(100ms);
    openPanel();
    input().chord({KEY_LEFTALT, KEY_SPACE});
    ASSERT_TRUE(soon([] { return !isOpen(); }));
    sway_->configure("set $mod Mod1\nbindsym $mod+space mark taken");
    input().chord({KEY_LEFTALT, KEY_SPACE});
    EXPECT_TRUE(soon([] { return sway_->marks() == "taken"; }));
    EXPECT_FALSE(isOpen());
    sway_->configure("unbindsym $mod+space");
    letPass(100ms);
    openPanel();
}

} // namespace quillmoth::test
