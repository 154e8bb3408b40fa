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

/// As the program's own panel, never managed and never activated. It notes what is typed into it.
class Panel : public QRasterWindow {
public:
    Panel() {
        setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint | Qt::WindowStaysOnTopHint);
        setGeometry(700, 300, 200, 100);
        show();
    }

    std::string typed;

protected:
    void keyPressEvent(QKeyEvent* event) override { typed += event->text().toStdString(); }
};

class PanelFocusTest : public X11Session {
protected:
    PanelFocusTest() {
        turns = focus().onTurnedElsewhere([this](Turn turn) { seen.push_back(turn); });
    }

    ~PanelFocusTest() override {
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

    Panel panel;
    const ChildProcess terminal = frontTerminal("front", "cat > " + file());
    std::vector<Turn> seen;
    Subscription turns;
};

} // namespace

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

TEST_F(PanelFocusTest, AnotherActiveWindowIsATurnAndTheWheelOverOneIsNone) {
    acquire();
    input().click(150, 200, 5);
    letPass(50ms);
    EXPECT_EQ(seen, std::vector<Turn>());
    const auto other = frontTerminal("other");
    EXPECT_TRUE(sees({Turn::activatedElsewhere}));
    EXPECT_FALSE(focus().isHeld());
    input().click(750, 350);
    EXPECT_TRUE(holdsWithin(1s, [] { return focus().isHeld(); })) << "a click in the panel";
    EXPECT_TRUE(types("again")) << panel.typed;
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

TEST_F(PanelFocusTest, WhileAnotherProgramGrabsTheKeyboardItWaitsAndThenMovesTheFocus) {
    ASSERT_TRUE(desktop().grabKeyboard());
    focus().acquire(panel.winId());
    letPass(100ms);
    EXPECT_FALSE(focus().isHeld());
    desktop().ungrabKeyboard();
    EXPECT_TRUE(holdsWithin(300ms, [] { return focus().isHeld(); }));
    EXPECT_TRUE(types("grab"));
    focus().release();

    const auto focused = desktop().windows().inputFocus();
    ASSERT_TRUE(desktop().grabKeyboard());
    focus().acquire(panel.winId());
    EXPECT_TRUE(holdsWithin(2s, [] { return focus().isHeld(); }));
    EXPECT_EQ(desktop().windows().inputFocus(), panel.winId());
    focus().release();
    EXPECT_EQ(desktop().windows().inputFocus(), focused);
    desktop().ungrabKeyboard();
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
    auto& hotKeys = backEnd().hotKeyCenter();
    int presses = 0;
    hotKeys.installEventHandler([&](const platform::HotKeyEvent* event) {
        if (event->kind == platform::kEventHotKeyPressed)
            ++presses;
        else if (!focus().isHeld()) {
            focus().prepare();
            input().type("aB cd");
            input().chord({KEY_LEFTALT, KEY_SPACE});
            focus().acquire(panel.winId());
            input().type("e");
        }
        return platform::noErr;
    });
    platform::HotKeyCenter::Handle altSpace = 0;
    EXPECT_EQ(hotKeys.registerEventHotKey(49, 0x800, {7, 1}, altSpace), platform::noErr);
    input().chord({KEY_LEFTALT, KEY_SPACE});
    EXPECT_TRUE(holdsWithin(2s, [&] { return panel.typed == "aB cde"; })) << panel.typed;
    EXPECT_EQ(presses, 2) << "the second one too";
    hotKeys.unregisterEventHotKey(altSpace);
    hotKeys.installEventHandler({});
    focus().release();
    input().type("after\n");
    EXPECT_TRUE(holdsWithin(2s, [] { return typedIntoTerminal() == "after\n"; })) << typedIntoTerminal();
}

} // namespace quillmoth::test
