// The panel on a desktop: keyboard layouts, input methods, the window manager's own keys, full-screen
// programs and the locking of the session.

#include "tests/desktop/panel/PanelSession.h"

#include <linux/input-event-codes.h>
#include <xcb/shape.h>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

class PanelPlace : public PanelSession {
protected:
    static void setLayout(const std::string& layout, const std::string& variant = "") {
        runChild({"setxkbmap", layout, variant}, 5s);
        // The server tells everybody, and hot keys are taken anew, in a moment.
        letPass(700ms);
    }

    /// Whether the panel is of another shape than a rectangle.
    static bool isCutOut() {
        const auto reply = ownedReply(xcb_shape_query_extents_reply(
            desktop().connection(), xcb_shape_query_extents(desktop().connection(), session().panelWindow()),
            nullptr));
        return reply && reply->bounding_shaped != 0;
    }
};

TEST_F(PanelPlace, LettersOfALayoutAndDeadKeysReachTheFieldAndKeyEquivalentsStayInTheirPlaces) {
    openPanel();
    setLayout("us", "intl");
    for (const int key : {KEY_APOSTROPHE, KEY_E, KEY_A})
        input().tapKey(key);
    EXPECT_TRUE(soon([] { return command() == "éa"; })) << command();
    setLayout("ru");
    input().tapKey(KEY_F);
    EXPECT_TRUE(soon([] { return command() == "éaа"; })) << command();
    for (const char* list : {"History", "Presets"}) {
        input().chord({KEY_LEFTCTRL, KEY_H});
        EXPECT_TRUE(soon([&] { return has("list", list); }));
    }
    setLayout("us");
    input().tapKey(KEY_B);
    EXPECT_TRUE(soon([] { return command() == "éaаb"; })) << command();
    expectFrontKept();
}

TEST_F(PanelPlace, TheWindowManagersChordClosesThePanelAndDoesItsWork) {
    const ChildProcess terminal({"xterm", "-T", "other", "-geometry", "40x10+20+20"});
    ASSERT_TRUE(soon([] {
        const auto other = windows().windowTitled("other");
        return other && windows().activeWindow() == *other;
    }));
    openPanel();
    input().pressKey(KEY_LEFTALT);
    input().pressKey(KEY_TAB);
    EXPECT_TRUE(closes());
    letPass(200ms);
    input().releaseKey(KEY_TAB);
    input().releaseKey(KEY_LEFTALT);
    EXPECT_TRUE(soon([] { return editor().isActive(); }));
}

TEST_F(PanelPlace, ItShowsOverAFullScreenProgramWhichStaysActive) {
    const auto isFull = [] { return windows().geometry(editor().window()).width == 1280; };
    input().tapKey(KEY_F11);
    ASSERT_TRUE(soon(isFull));
    openPanel();
    const DesktopRectangle field = await("text", "Command").bounds();
    EXPECT_TRUE(hasColor({field.x + field.width / 2, field.y + 2, 1, 1}, 0x1C1C21)) << "it is on top";
    typeCommand("over");
    EXPECT_TRUE(editor().isActive());
    pressHotKey();
    EXPECT_TRUE(closes());
    input().tapKey(KEY_F11);
    EXPECT_TRUE(soon([&] { return !isFull(); }));
}

TEST_F(PanelPlace, ItsCornersFollowTheCompositor) {
    if (desktop().windowManager() != "openbox")
        GTEST_SKIP() << "this window manager composites by itself";
    openPanel();
    EXPECT_TRUE(soon(isCutOut));
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const xcb_window_t owner = xcb_generate_id(connection);
    xcb_create_window(connection, 0, owner, desktop().rootWindow(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, 0, 0, nullptr);
    xcb_set_selection_owner(connection, owner, windows().atom("_NET_WM_CM_S0"), XCB_CURRENT_TIME);
    xcb_flush(connection);
    EXPECT_TRUE(soon([] { return !isCutOut(); }));
    xcb_disconnect(connection);
    EXPECT_TRUE(soon(isCutOut));
    expectFrontKept();
}

TEST_F(PanelPlace, AProgramThatAsksForTheWholeKeyboardGetsIt) {
    openPanel();
    EXPECT_FALSE(desktop().grabKeyboard());
    EXPECT_TRUE(soon([] { return desktop().grabKeyboard(); }));
    EXPECT_TRUE(closes());
    desktop().ungrabKeyboard();
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
    editor().deselect();
    input().type("k");
    EXPECT_TRUE(editorHolds(kEditorText + std::string("k"))) << editor().text();
    input().tapKey(KEY_BACKSPACE);
    EXPECT_TRUE(editorHolds(kEditorText));
}

TEST_F(PanelPlace, WhatAnInputMethodComposesReachesTheField) {
    const auto engine = [] { return runChild({"ibus", "engine"}, 5s).output; };
    ChildProcess daemon({"ibus-daemon", "--panel=disable", "--emoji-extension=disable"});
    waitFor(
        [&] {
            // A table that turns "\\alpha" into a letter.
            runChild({"ibus", "engine", "table:latex"}, 5s);
            return !daemon.isRunning() || engine() == "table:latex\n";
        },
        20s);
    if (!daemon.isRunning() || engine() != "table:latex\n")
        GTEST_SKIP() << "no such input method is installed: " << daemon.output();
    session().quit();
    session().start({}, {{"QT_IM_MODULE", "ibus"}});
    awaitHotKey();
    openPanel();
    input().type("\\alpha ");
    EXPECT_TRUE(soon([] { return command().starts_with("α"); })) << command() << engine();
    expectFrontKept();
    session().quit();
    session().start();
    awaitHotKey();
}

} // namespace

} // namespace quillmoth::test
