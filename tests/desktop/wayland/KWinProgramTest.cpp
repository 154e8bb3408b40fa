// The main job in a session of KWin, driven and looked at from outside.

#include "tests/desktop/wayland/KWinDesktop.h"
#include "tests/desktop/wayland/WaylandProgram.h"

#include <linux/input-event-codes.h>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

/// In the codes of Qt.
constexpr int kAltSpace = 0x08000000 | 0x20;

class KWinProgram : public WaylandProgram {
protected:
    static void SetUpTestSuite() {
        if (!KWinDesktop::isThere())
            return;
        auto desktop = std::make_unique<KWinDesktop>();
        kwin_ = desktop.get();
        startDesktop(std::move(desktop));
        startProgram();
    }

    static std::string diagnosis() { return session().run({"--diagnose"}).output; }

    static void TearDownTestSuite() { endDesktop(); }

    void SetUp() override {
        if (!KWinDesktop::isThere())
            GTEST_SKIP() << "kwin_wayland is not installed";
        startProgram();
        startEditor({"mousepad", "--disable-server"}, {{"GDK_BACKEND", "wayland"}});
    }

    static std::string pasted(const std::string& type) {
        return runChild({"wl-paste", "--no-newline", "--type", type}, 2s).output;
    }

    static KWinDesktop* kwin_;
};

KWinDesktop* KWinProgram::kwin_ = nullptr;

} // namespace

TEST_F(KWinProgram, TheSelectionIsReplacedByTheAnswerAndTheClipboardKeptInAllItsForms) {
    const ChildProcess owner({"wl-copy", "--type", "text/html", "<b>kept</b>"});
    ASSERT_TRUE(soon([] { return pasted("text/html") == "<b>kept</b>"; }));
    replaceFirstLine("kwin-answer.png");
    EXPECT_FALSE(isOpen());
    EXPECT_TRUE(soon([] { return pasted("text/html") == "<b>kept</b>"; })) << pasted("text/html");
    // One step to the editor's own undo, as only a paste is.
    input().chord({KEY_LEFTCTRL, KEY_Z});
    EXPECT_TRUE(soon([this] { return text() == bothLines(kFirstLine); })) << text();
}

TEST_F(KWinProgram, AProgramOfQtIsServedAsOneOfGtk) {
    startEditor({"featherpad", "--standalone"}, {{"QT_QPA_PLATFORM", "wayland"}});
    if (!HasFatalFailure())
        replaceFirstLine("kwin-qt.png");
}

TEST_F(KWinProgram, AProgramOnXwaylandIsServedAsAnyOther) {
    startEditor({"mousepad", "--disable-server"}, kwin_->onXwayland());
    if (!HasFatalFailure())
        replaceFirstLine();
}

TEST_F(KWinProgram, TheAlternativeMethodCopiesAndPutsBackWhatWasThere) {
    startProgram({{"useCopyHack", true}});
    const ChildProcess owner({"wl-copy", "--type", "text/html", "<i>kept</i>"});
    selectFirstLine();
    openPanel();
    EXPECT_TRUE(soon([] { return session().shown().shows("Context found"); }));
    EXPECT_EQ(pasted("text/html"), "<i>kept</i>");
}

TEST_F(KWinProgram, ATerminalIsReadAndNotPastedInto) {
    ChildProcess terminal({"xterm", "-fullscreen", "-e", "printf selected; exec cat"},
                          {.environment = kwin_->onXwayland()});
    ASSERT_TRUE(soon([] {
        // A double click selects a word.
        input().click(20, 8, 2);
        return holdsWithin(1s, [] {
            return runChild({"wl-paste", "--no-newline", "--primary"}, 2s).output.starts_with("selected");
        });
    })) << terminal.output();
    openPanel();
    EXPECT_TRUE(soon([] { return session().shown().shows("Context found"); }));
    ask();
    input().chord({KEY_LEFTCTRL, KEY_ENTER});
    EXPECT_TRUE(soon([] { return session().shown().shows("terminal"); }));
    desktop().saveScreenshot("kwin-terminal-told.png");
}

TEST_F(KWinProgram, APressBesideThePanelClosesItAndEscapeToo) {
    openPanel();
    desktop().saveScreenshot("kwin-panel.png");
    input().click(20, 780);
    EXPECT_TRUE(soon([] { return !isOpen(); }));
    openPanel();
    for (int press = 0; press < 3 && isOpen(); ++press)
        input().tapKey(KEY_ESC);
    EXPECT_TRUE(soon([] { return !isOpen(); }));
    input().type("x");
    EXPECT_TRUE(soon([this] { return text().find('x') != std::string::npos; })) << text();
}

TEST_F(KWinProgram, ThePinnedPanelLeavesTheKeyboardToAPressBesideIt) {
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

TEST_F(KWinProgram, EachPressOfTheHotKeyCountsOnce) {
    constexpr int kPresses = 100;
    int arrived = 0;
    for (int press = 1; press <= kPresses; ++press) {
        const bool opens = press % 2 == 1;
        pressHotKey();
        arrived += soon([opens] { return opens ? hasKeyboard() : !isOpen(); }) ? 1 : 0;
    }
    EXPECT_EQ(arrived, kPresses);
    EXPECT_EQ(text(), bothLines(kFirstLine));
}

TEST_F(KWinProgram, AHeldHotKeyOpensOnceItIsReleased) {
    input().pressKey(KEY_LEFTALT);
    input().pressKey(KEY_SPACE);
    letPass(1200ms);
    EXPECT_FALSE(isOpen());
    input().releaseKey(KEY_SPACE);
    input().releaseKey(KEY_LEFTALT);
    EXPECT_TRUE(soon(hasKeyboard));
}

TEST_F(KWinProgram, TheDiagnosisTellsWhatWorksAndNothingIsLeftAtTheEnd) {
    const std::string page = diagnosis();
    for (const char* line : {"served by KWin", "Alt+Space, active", "on a layer of KWin", "sent through KWin",
                             "mousepad (gtk)", "Write-back: through accessibility"})
        EXPECT_NE(page.find(line), std::string::npos) << line << " in\n" << page;
    EXPECT_NE(KWinDesktop::componentsWithKeys().find("Quillmoth"), std::string::npos);
    EXPECT_EQ(session().quit(), 0);
    EXPECT_TRUE(
        soon([] { return KWinDesktop::componentsWithKeys().find("Quillmoth") == std::string::npos; }));
    startProgram();
}

TEST_F(KWinProgram, AKeyThatAnotherProgramHasStaysThereAndItsOwnerIsNamed) {
    EXPECT_EQ(session().quit(), 0);
    KWinDesktop::bindElsewhere(kAltSpace);
    startProgram();
    EXPECT_NE(session().output().find("“Runner” has it for “Run a Command”"), std::string::npos)
        << session().output();
    const std::string page = diagnosis();
    EXPECT_NE(page.find("Alt+Space, not active: Runner has it"), std::string::npos) << page;
    pressHotKey();
    letPass(300ms);
    EXPECT_FALSE(isOpen());
    KWinDesktop::freeElsewhere();
    startProgram();
    openPanel();
}

} // namespace quillmoth::test
