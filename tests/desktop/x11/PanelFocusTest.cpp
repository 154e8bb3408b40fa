#include "tests/desktop/x11/X11Session.h"

#include <QKeyEvent>
#include <QRasterWindow>
#include <fstream>
#include <linux/input-event-codes.h>
#include <poll.h>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;
using Turn = platform::PanelFocus::Turn;

/// A window of this program that notes what is typed into it.
class OwnWindow : public QRasterWindow {
public:
    OwnWindow(Qt::WindowFlags flags, QRect place, QWindow* transientParent = nullptr) {
        setFlags(flags);
        setGeometry(place);
        setTransientParent(transientParent);
        show();
    }

    std::string typed;
    bool grabsWhenPressed = false;

protected:
    void mousePressEvent(QMouseEvent*) override {
        if (grabsWhenPressed)
            setKeyboardGrabEnabled(true);
    }

    void keyPressEvent(QKeyEvent* event) override { typed += event->text().toStdString(); }
};

constexpr auto kUnmanaged = Qt::FramelessWindowHint | Qt::BypassWindowManagerHint | Qt::WindowStaysOnTopHint;

class PanelFocusTest : public X11Session {
protected:
    PanelFocusTest() {
        terminal = frontTerminal("front", "cat > " + file());
        front = desktop().windows().activeWindow();
        turns = focus().onTurnedElsewhere([this](Turn turn) { seen.push_back(turn); });
    }

    ~PanelFocusTest() override {
        backEnd().hotKeyCenter().unregisterEventHotKey(altSpace);
        backEnd().hotKeyCenter().installEventHandler({});
        focus().release();
        focus().setIdleTime(60s);
    }

    static platform::X11PanelFocus& focus() { return backEnd().panelFocus(); }

    static std::string file() { return desktop().temporaryDirectory() + "/typed"; }

    static std::string typedIntoTerminal() {
        std::ifstream stream(file());
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    void acquire() {
        focus().acquire(panel.winId());
        ASSERT_TRUE(holdsWithin(2s, [] { return focus().isHeld(); }));
    }

    bool types(const std::string& text) {
        panel.typed.clear();
        input().type(text);
        return holdsWithin(1s, [&] { return panel.typed == text; });
    }

    bool sees(const std::vector<Turn>& expected) {
        return holdsWithin(1s, [&] { return seen == expected; });
    }

    /// What the server answers where another program wants the keyboard.
    static std::uint8_t grabForRival() {
        auto* rival = desktop().connection();
        const auto cookie = xcb_grab_keyboard(rival, 0, desktop().rootWindow(), XCB_CURRENT_TIME,
                                              XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        auto* reply = xcb_grab_keyboard_reply(rival, cookie, nullptr);
        const std::uint8_t status = reply->status;
        std::free(reply);
        return status;
    }

    static void ungrabForRival() {
        xcb_ungrab_keyboard(desktop().connection(), XCB_CURRENT_TIME);
        xcb_flush(desktop().connection());
    }

    static bool comesToFront(std::uint32_t window) {
        return holdsWithin(2s, [&] { return desktop().windows().activeWindow() == window; });
    }

    bool panelTakesKeys() {
        input().click(750, 350);
        return holdsWithin(1s, [] { return focus().isHeld(); });
    }

    /// Until the end of the test.
    void onAltSpace(const std::function<void(bool isPress)>& react) {
        backEnd().hotKeyCenter().installEventHandler([react](const platform::HotKeyEvent* event) {
            react(event->kind == platform::kEventHotKeyPressed);
            return platform::noErr;
        });
        ASSERT_EQ(backEnd().hotKeyCenter().registerEventHotKey(49, 0x800, {7, 1}, altSpace), platform::noErr);
    }

    /// As the program's own panel: never managed, never activated.
    OwnWindow panel{Qt::Tool | kUnmanaged, {700, 300, 200, 100}};
    std::unique_ptr<ChildProcess> terminal;
    std::uint32_t front = 0;
    std::vector<Turn> seen;
    Subscription turns;
    platform::HotKeyCenter::Handle altSpace = 0;
};

} // namespace

TEST_F(PanelFocusTest, TheKeysComeToThePanelAndTheOtherWindowStaysActiveAndFocused) {
    const auto focused = desktop().windows().inputFocus();
    acquire();
    input().chord({KEY_LEFTCTRL, KEY_C});
    input().chord({KEY_LEFTALT, KEY_K});
    input().tapKey(KEY_ESC);
    letPass(100ms);
    EXPECT_TRUE(types("Hello")) << panel.typed;
    EXPECT_EQ(desktop().windows().activeWindow(), front);
    EXPECT_EQ(desktop().windows().inputFocus(), focused);
    EXPECT_EQ(backEnd().frontApplication().processIdentifier(), terminal->processIdentifier());
    focus().release();
    EXPECT_FALSE(focus().isHeld());
    input().type("after\n");
    EXPECT_TRUE(holdsWithin(1s, [] { return typedIntoTerminal() == "after\n"; })) << typedIntoTerminal();
    EXPECT_EQ(seen, std::vector<Turn>());
}

TEST_F(PanelFocusTest, AProgramThatHangsGivesTheKeysBack) {
    focus().setHangLimit(100ms);
    acquire();
    input().type("lost\n");
    // The main loop does not run before the terminal has got what is typed.
    const auto deadline = std::chrono::steady_clock::now() + 5s;
    while (typedIntoTerminal().empty() && std::chrono::steady_clock::now() < deadline) {
        input().type("x\n");
        poll(nullptr, 0, 20);
    }
    EXPECT_NE(typedIntoTerminal(), "");
    EXPECT_TRUE(sees({Turn::activatedElsewhere}));
    EXPECT_FALSE(focus().isHeld());
    focus().setHangLimit(2s);
    acquire();
    EXPECT_TRUE(types("again")) << panel.typed;
}

TEST_F(PanelFocusTest, AnOutsidePressGivesTheKeysBackAndAnInsideOneTakesThemAgain) {
    acquire();
    input().click(750, 350);
    letPass(50ms);
    EXPECT_EQ(seen, std::vector<Turn>());
    input().click(150, 200, 5);
    letPass(50ms);
    EXPECT_EQ(seen, std::vector<Turn>()) << "the wheel";
    input().click(150, 200);
    EXPECT_TRUE(sees({Turn::pressedElsewhere}));
    EXPECT_FALSE(focus().isHeld());
    EXPECT_TRUE(panelTakesKeys());
    EXPECT_TRUE(types("again"));
    EXPECT_EQ(desktop().windows().activeWindow(), front);
}

TEST_F(PanelFocusTest, AnotherWindowOfTheProgramIsElsewhereAndAPopUpOfThePanelIsNot) {
    OwnWindow settings(Qt::Window, {100, 500, 200, 100});
    ASSERT_TRUE(comesToFront(settings.winId()));
    const OwnWindow popUp(Qt::ToolTip | kUnmanaged, {700, 420, 200, 50}, &panel);
    for (int round = 0; round < 2; ++round) {
        acquire();
        EXPECT_TRUE(types("panel")) << "over the other window";
        input().click(750, 440);
        letPass(100ms);
        EXPECT_EQ(seen, std::vector<Turn>());
        input().click(150, 550, 5);
        letPass(50ms);
        EXPECT_TRUE(focus().isHeld()) << "the wheel";
        input().click(150, 550);
        EXPECT_TRUE(sees({Turn::pressedElsewhere}));
        EXPECT_FALSE(focus().isHeld());
        input().type("s");
        EXPECT_TRUE(holdsWithin(1s, [&] { return settings.typed == "s"; })) << settings.typed;
        EXPECT_TRUE(panelTakesKeys());
        EXPECT_TRUE(types("again"));
        EXPECT_EQ(std::exchange(settings.typed, {}), "s");
        EXPECT_EQ(desktop().windows().activeWindow(), settings.winId());
        focus().release();
        seen.clear();
    }
    desktop().windows().activate(front);
    ASSERT_TRUE(comesToFront(front));
    acquire();
    desktop().windows().activate(static_cast<std::uint32_t>(settings.winId()));
    EXPECT_TRUE(sees({Turn::activatedElsewhere}));
    EXPECT_FALSE(focus().isHeld());
}

TEST_F(PanelFocusTest, AGrabOfAnotherWindowOfTheProgramIsLeftAloneAndItsEndTakesNothingAway) {
    OwnWindow settings(Qt::Window, {100, 500, 200, 100});
    settings.grabsWhenPressed = true;
    ASSERT_TRUE(comesToFront(settings.winId()));
    acquire();
    input().click(150, 550);
    EXPECT_TRUE(sees({Turn::pressedElsewhere}));
    EXPECT_EQ(grabForRival(), XCB_GRAB_STATUS_ALREADY_GRABBED) << "it has the keyboard as it wanted";
    ungrabForRival();
    // Its question is noticed too, and is a turn where the panel has the keyboard by then.
    letPass(100ms);
    ASSERT_TRUE(panelTakesKeys());
    settings.setKeyboardGrabEnabled(false);
    letPass(100ms);
    EXPECT_TRUE(types("panel"));
    EXPECT_EQ(settings.typed, "");
    settings.setKeyboardGrabEnabled(true);
    EXPECT_TRUE(sees({Turn::pressedElsewhere, Turn::activatedElsewhere}));
    EXPECT_FALSE(focus().isHeld());
    settings.setKeyboardGrabEnabled(false);
}

TEST_F(PanelFocusTest, ANewActiveWindowIsToldButNothingAfterRelease) {
    acquire();
    auto other = frontTerminal("other", "sleep 60", "40x10+100+500");
    EXPECT_TRUE(sees({Turn::activatedElsewhere}));
    focus().release();
    desktop().windows().activate(front);
    input().click(150, 200);
    EXPECT_TRUE(comesToFront(front));
    letPass(100ms);
    EXPECT_EQ(seen.size(), 1U);
}

TEST_F(PanelFocusTest, AChordOfTheWindowManagerReachesItAtTheFirstStroke) {
    auto other = frontTerminal("other", "sleep 60", "40x10+100+500");
    const auto otherWindow = desktop().windows().activeWindow();
    ASSERT_NE(otherWindow, front);
    acquire();
    input().pressKey(KEY_LEFTALT);
    letPass(30ms);
    input().pressKey(KEY_TAB);
    EXPECT_TRUE(holdsWithin(1s, [this] { return !seen.empty(); }));
    letPass(100ms);
    input().releaseKey(KEY_TAB);
    input().releaseKey(KEY_LEFTALT);
    ASSERT_FALSE(seen.empty());
    EXPECT_EQ(seen.front(), Turn::desktopShortcut);
    EXPECT_TRUE(comesToFront(front));
    focus().release();
}

TEST_F(PanelFocusTest, TheHotKeyWorksUnderTheGrabAndWritesNothing) {
    std::string log;
    onAltSpace([&](bool isPress) { log += isPress ? '+' : '-'; });
    acquire();
    panel.typed.clear();
    input().pressKey(KEY_LEFTALT);
    input().pressKey(KEY_SPACE);
    letPass(900ms);
    EXPECT_EQ(log, "+") << "repeats";
    input().releaseKey(KEY_SPACE);
    input().releaseKey(KEY_LEFTALT);
    EXPECT_TRUE(holdsWithin(1s, [&] { return log == "+-"; })) << log;
    EXPECT_EQ(panel.typed, "");
    EXPECT_TRUE(types("a b"));
    EXPECT_EQ(seen, std::vector<Turn>());
}

TEST_F(PanelFocusTest, WithoutAKeyForLongItGivesUp) {
    focus().setIdleTime(300ms);
    acquire();
    letPass(200ms);
    EXPECT_TRUE(types("k"));
    letPass(200ms);
    EXPECT_TRUE(focus().isHeld());
    EXPECT_TRUE(sees({Turn::idle}));
    EXPECT_FALSE(focus().isHeld());
    input().click(150, 200);
    EXPECT_TRUE(sees({Turn::idle, Turn::pressedElsewhere}));
}

TEST_F(PanelFocusTest, AStartingScreenSaverTakesTheKeysAway) {
    acquire();
    letPass(100ms);
    const auto signal = [](const std::string& value) {
        return runChild({"dbus-send", "--session", "--type=signal", "/ScreenSaver",
                         "org.freedesktop.ScreenSaver.ActiveChanged", "boolean:" + value},
                        2s)
            .exitCode;
    };
    EXPECT_EQ(signal("false"), 0);
    letPass(100ms);
    EXPECT_EQ(seen, std::vector<Turn>());
    EXPECT_EQ(signal("true"), 0);
    EXPECT_TRUE(sees({Turn::sessionLocked}));
    EXPECT_FALSE(focus().isHeld());
}

TEST_F(PanelFocusTest, WhileAnotherProgramGrabsTheKeyboardItWaitsAndThenMovesTheFocus) {
    grabForRival();
    focus().acquire(panel.winId());
    letPass(100ms);
    EXPECT_FALSE(focus().isHeld());
    ungrabForRival();
    EXPECT_TRUE(holdsWithin(300ms, [] { return focus().isHeld(); }));
    EXPECT_TRUE(types("grab"));
    focus().release();

    const auto focused = desktop().windows().inputFocus();
    grabForRival();
    focus().acquire(panel.winId());
    EXPECT_TRUE(holdsWithin(2s, [] { return focus().isHeld(); }));
    EXPECT_EQ(desktop().windows().inputFocus(), panel.winId());
    focus().release();
    EXPECT_EQ(desktop().windows().inputFocus(), focused);
    ungrabForRival();
}

TEST_F(PanelFocusTest, AClickInACandidateWindowIsInside) {
    auto* connection = desktop().connection();
    const auto window = xcb_generate_id(connection);
    const std::uint32_t overrideRedirect = 1;
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, desktop().rootWindow(), 700, 420, 200, 50, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT,
                      &overrideRedirect);
    constexpr std::string_view kClass("ibus-ui-gtk3\0Ibus-ui-gtk3", 26);
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        kClass.size(), kClass.data());
    xcb_map_window(connection, window);
    acquire();
    input().click(750, 440);
    letPass(100ms);
    EXPECT_EQ(seen, std::vector<Turn>());
    EXPECT_TRUE(focus().isHeld());
    xcb_destroy_window(connection, window);
    xcb_flush(connection);
}

TEST_F(PanelFocusTest, WhatIsTypedBeforeThePanelHasTheKeyboardComesToItAndNotToTheOtherWindow) {
    int presses = 0;
    onAltSpace([&](bool isPress) {
        if (isPress)
            ++presses;
        else if (!focus().isHeld()) {
            focus().prepare();
            input().type("aB cd");
            input().chord({KEY_LEFTALT, KEY_SPACE});
            focus().acquire(panel.winId());
            input().type("e");
        }
    });
    input().chord({KEY_LEFTALT, KEY_SPACE});
    EXPECT_TRUE(holdsWithin(2s, [&] { return panel.typed == "aB cde"; })) << panel.typed;
    EXPECT_EQ(presses, 2) << "the second one too";
    focus().release();
    input().type("after\n");
    EXPECT_TRUE(holdsWithin(2s, [] { return typedIntoTerminal() == "after\n"; })) << typedIntoTerminal();
}

} // namespace quillmoth::test
