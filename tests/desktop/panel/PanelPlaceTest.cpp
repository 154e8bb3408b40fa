// The panel among the windows of a desktop: keyboard layouts, the window manager's own keys, full-screen
// programs and the locking of the session.

#include "tests/desktop/panel/PanelSession.h"

#include <linux/input-event-codes.h>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

class PanelPlace : public PanelSession {
protected:
    void TearDown() override {
        setLayout("us");
        PanelSession::TearDown();
    }

    static void setLayout(const std::string& layout, const std::string& variant = "") {
        runChild({"setxkbmap", layout, variant}, 5s);
        // The server tells everybody, and hot keys are taken anew, in a moment.
        letPass(700ms);
    }
};

TEST_F(PanelPlace, KeyEquivalentsWorkByPositionOnOtherAlphabets) {
    for (const char* layout : {"ru", "gr", "us,ru"}) {
        setLayout(layout);
        openPanel();
        input().chord({KEY_LEFTCTRL, KEY_H});
        EXPECT_TRUE(soon([] { return shows("list", "History"); })) << layout;
        input().chord({KEY_LEFTCTRL, KEY_H});
        EXPECT_TRUE(soon([] { return shows("list", "Presets"); })) << layout;
        input().chord({KEY_LEFTCTRL, KEY_T});
        EXPECT_TRUE(soon([] { return await("check box", "On top").has(ATSPI_STATE_CHECKED); })) << layout;
        input().chord({KEY_LEFTCTRL, KEY_T});
        EXPECT_TRUE(soon([] { return !await("check box", "On top").has(ATSPI_STATE_CHECKED); })) << layout;
        expectFrontKept();
        pressHotKey();
        EXPECT_TRUE(closes()) << layout;
    }
}

TEST_F(PanelPlace, LettersOfALayoutAndDeadKeysReachTheField) {
    openPanel();
    setLayout("us", "intl");
    input().tapKey(KEY_APOSTROPHE);
    input().tapKey(KEY_E);
    input().tapKey(KEY_A);
    EXPECT_TRUE(soon([] { return command() == "éa"; })) << command();
    setLayout("ru");
    input().tapKey(KEY_F);
    EXPECT_TRUE(soon([] { return command() == "éaа"; })) << command();
    setLayout("us");
    input().tapKey(KEY_B);
    EXPECT_TRUE(soon([] { return command() == "éaаb"; })) << command();
    expectFrontKept();
}

TEST_F(PanelPlace, TheWindowManagersChordClosesThePanelAndDoesItsWork) {
    const ChildProcess terminal({"xterm", "-T", "other", "-geometry", "40x10+20+20"});
    std::uint32_t other = 0;
    ASSERT_TRUE(soon([&] {
        other = desktop().windows().windowTitled("other").value_or(0);
        return other != 0 && desktop().windows().activeWindow() == other;
    }));
    pressHotKey();
    ASSERT_TRUE(soon(isOpen));
    ASSERT_TRUE(soon([] { return isFocused("text Command"); }));
    input().pressKey(KEY_LEFTALT);
    input().pressKey(KEY_TAB);
    EXPECT_TRUE(closes());
    letPass(200ms);
    input().releaseKey(KEY_TAB);
    input().releaseKey(KEY_LEFTALT);
    EXPECT_TRUE(soon([] { return scene().isEditorActive(); }));
}

TEST_F(PanelPlace, ItShowsOverAFullScreenProgramWhichStaysActive) {
    input().tapKey(KEY_F11);
    const bool isFull =
        soon([] { return desktop().windows().geometry(scene().editorWindow()).width == 1280; });
    ASSERT_TRUE(isFull);
    openPanel();
    const auto field = await("text", "Command");
    EXPECT_EQ(pixelIn(field, panel().extents(field).width / 2, 2), 0x1C1C21U) << "it is on top";
    input().type("over");
    EXPECT_TRUE(soon([] { return command() == "over"; }));
    EXPECT_TRUE(scene().isEditorActive());
    pressHotKey();
    EXPECT_TRUE(closes());
    input().tapKey(KEY_F11);
    EXPECT_TRUE(soon([] { return desktop().windows().geometry(scene().editorWindow()).width < 1280; }));
}

TEST_F(PanelPlace, LockingTheSessionClosesItAndFreesTheKeyboard) {
    openPanel();
    // The buses are listened to a moment behind the first picture.
    letPass(300ms);
    const auto signal = [](const char* value) {
        runChild({"dbus-send", "--session", "--type=signal", "/org/freedesktop/ScreenSaver",
                  "org.freedesktop.ScreenSaver.ActiveChanged", value},
                 5s);
    };
    signal("boolean:false");
    letPass(200ms);
    EXPECT_TRUE(isOpen());
    signal("boolean:true");
    EXPECT_TRUE(closes());
    const auto text = editor().find("text");
    ASSERT_TRUE(text);
    input().tapKey(KEY_END);
    input().type("k");
    EXPECT_TRUE(soon([&] { return editor().text(*text).find("meeting.k") != std::string::npos; }))
        << editor().text(*text);
    input().tapKey(KEY_BACKSPACE);
    EXPECT_TRUE(soon([&] { return editor().text(*text) == kEditorText; }));
}

} // namespace

} // namespace quillmoth::test
