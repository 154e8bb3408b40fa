// The panel among the windows of a desktop: keyboard layouts, the window manager's own keys, full-screen
// programs and the locking of the session.

#include "tests/desktop/panel/PanelSession.h"

#include <linux/input-event-codes.h>
#include <xcb/shape.h>

#include <cstdlib>
#include <memory>

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

    static xcb_atom_t atom(const std::string& name) {
        const auto cookie =
            xcb_intern_atom(desktop().connection(), 0, static_cast<std::uint16_t>(name.size()), name.c_str());
        const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
            xcb_intern_atom_reply(desktop().connection(), cookie, nullptr), &std::free);
        return reply ? reply->atom : xcb_atom_t{0};
    }

    /// Whether the window is of another shape than a rectangle.
    static bool isCutOut(std::uint32_t window) {
        const auto cookie = xcb_shape_query_extents(desktop().connection(), window);
        const std::unique_ptr<xcb_shape_query_extents_reply_t, decltype(&std::free)> reply(
            xcb_shape_query_extents_reply(desktop().connection(), cookie, nullptr), &std::free);
        return reply && reply->bounding_shaped != 0;
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

TEST_F(PanelPlace, ItsCornersFollowTheCompositor) {
    if (desktop().windowManager() != "openbox")
        GTEST_SKIP() << "this window manager composites by itself";
    openPanel();
    EXPECT_TRUE(soon([] { return isCutOut(scene().panelWindow()); }));
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const xcb_window_t owner = xcb_generate_id(connection);
    xcb_create_window(connection, 0, owner, desktop().rootWindow(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, 0, 0, nullptr);
    xcb_set_selection_owner(connection, owner, atom("_NET_WM_CM_S0"), XCB_CURRENT_TIME);
    xcb_flush(connection);
    EXPECT_TRUE(soon([] { return !isCutOut(scene().panelWindow()); }));
    xcb_disconnect(connection);
    EXPECT_TRUE(soon([] { return isCutOut(scene().panelWindow()); }));
    expectFrontKept();
}

TEST_F(PanelPlace, AProgramThatAsksForTheWholeKeyboardGetsIt) {
    openPanel();
    xcb_connection_t* locker = xcb_connect(nullptr, nullptr);
    const auto grabs = [locker] {
        const auto cookie = xcb_grab_keyboard(locker, 1, desktop().rootWindow(), XCB_CURRENT_TIME,
                                              XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        const std::unique_ptr<xcb_grab_keyboard_reply_t, decltype(&std::free)> reply(
            xcb_grab_keyboard_reply(locker, cookie, nullptr), &std::free);
        return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
    };
    EXPECT_FALSE(grabs());
    EXPECT_TRUE(soon(grabs));
    EXPECT_TRUE(closes());
    xcb_disconnect(locker);
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

/// With an input method between the keys and the panel: a table that turns "\\alpha" into a letter.
class PanelInputMethod : public PanelSession {
protected:
    static void SetUpTestSuite() {
        startDesktop();
        daemon_.emplace(std::vector<std::string>{
            "sh", "-c", "exec ibus-daemon --panel=disable --emoji-extension=disable"});
        isInstalled_ = holdsWithin(20s,
                                   [] {
                                       runChild({"sh", "-c", "ibus engine table:latex"}, 5s);
                                       return daemon_->waitForExit(0ms) || engine() == "table:latex\n";
                                   }) &&
                       !daemon_->waitForExit(0ms);
        setenv("QT_IM_MODULE", "ibus", 1); // NOLINT(concurrency-mt-unsafe)
        startProgram();
        unsetenv("QT_IM_MODULE"); // NOLINT(concurrency-mt-unsafe)
    }

    static void TearDownTestSuite() {
        daemon_.reset();
        PanelSession::TearDownTestSuite();
    }

    static std::string engine() { return runChild({"sh", "-c", "ibus engine"}, 5s).output; }

    static inline std::optional<ChildProcess> daemon_;
    static inline bool isInstalled_ = false;
};

TEST_F(PanelInputMethod, WhatItComposesReachesTheField) {
    if (!isInstalled_)
        GTEST_SKIP() << "no such input method is installed: " << daemon_->output();
    openPanel();
    input().type("\\alpha ");
    EXPECT_TRUE(soon([] { return command().starts_with("α"); })) << command() << engine();
    expectFrontKept();
}

} // namespace

} // namespace quillmoth::test
