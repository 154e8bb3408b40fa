#include "tests/desktop/windows/WindowsSession.h"

#include <linux/input-event-codes.h>
#include <xcb/xcb.h>

namespace quillmoth::test {

namespace {

using nlohmann::json;

constexpr const char* kSlot = "KeyboardShortcuts_showFloatingPanel";
constexpr const char* kPressShortcut = "Press shortcut…";
constexpr const char* kAltSpace = R"({"carbonKeyCode":49,"carbonModifiers":2048})";
constexpr const char* kControlAltK = R"({"carbonKeyCode":40,"carbonModifiers":2304})";

class SettingsDesktop : public WindowsSession {
protected:
    static void open() {
        start();
        run({"--settings"});
        awaitWindow("Settings");
    }

    static AccessibleElement recorder() { return await("text", "Open Quillmoth Hotkey:"); }

    static void awaitRecorder(const std::string& description) {
        eventually("the recorder says " + description,
                   [&] { return recorder().description() == description; });
    }

    static void record() {
        click(recorder());
        awaitRecorder(kPressShortcut);
    }

    static void endRecording() {
        input().tapKey(KEY_ESC);
        eventually("Escape ends the recording", [] { return recorder().description() != kPressShortcut; });
    }

    static void awaitGone(const std::string& text) {
        eventually("it no longer says: " + text, [&] { return !shows(text); });
    }

    static void togglePanelByTheShortcut() {
        for (const bool isOpening : {true, false}) {
            input().chord({KEY_LEFTCTRL, KEY_LEFTALT, KEY_K});
            eventually("the shortcut opens and closes the panel", [&] { return isOpen() == isOpening; });
        }
    }
};

} // namespace

TEST_F(SettingsDesktop, ARecordedShortcutOpensThePanelAndTheOneInForceCanBeRecordedAgain) {
    open();
    record();
    // The hot key that is grabbed at this moment goes to the recorder, and opens nothing.
    pressHotKey();
    awaitRecorder("Alt+Space");
    awaitStored(kSlot, kAltSpace);
    EXPECT_FALSE(isOpen());
    record();
    input().chord({KEY_LEFTCTRL, KEY_LEFTALT, KEY_K});
    awaitRecorder("Ctrl+Alt+K");
    EXPECT_EQ(recorder().text(), "⌥⌘K");
    awaitStored(kSlot, kControlAltK);
    togglePanelByTheShortcut();
}

TEST_F(SettingsDesktop, AShortcutThatTheDesktopOrAnotherProgramHasIsRefusedWithASheet) {
    // A program that holds F7, which the desktop's settings do not tell.
    constexpr xcb_keycode_t kF7 = KEY_F7 + 8;
    xcb_grab_key(desktop().connection(), 0, desktop().rootWindow(), 0, kF7, XCB_GRAB_MODE_ASYNC,
                 XCB_GRAB_MODE_ASYNC);
    xcb_flush(desktop().connection());
    open();
    const auto isRefused = [](std::initializer_list<int> keys) {
        constexpr const char* kText = "since your desktop uses it already";
        record();
        input().chord(keys);
        awaitText(kText);
        // The window manager gives a new window the keyboard a moment later.
        EXPECT_TRUE(isFocused("push button OK"));
        input().tapKey(KEY_ENTER);
        awaitGone(kText);
        // Another one can be pressed at once.
        awaitRecorder(kPressShortcut);
        endRecording();
        awaitStored(kSlot, kAltSpace);
    };
    isRefused({KEY_LEFTCTRL, KEY_LEFTALT, KEY_LEFT});
    isRefused({KEY_F7});
    xcb_ungrab_key(desktop().connection(), kF7, desktop().rootWindow(), 0);
    xcb_flush(desktop().connection());
}

TEST_F(SettingsDesktop, AShortcutOfAnotherProcessIsShownAndWorks) {
    open();
    json values = defaults();
    values[kSlot] = kControlAltK;
    writeDefaults(values);
    awaitRecorder("Ctrl+Alt+K");
    togglePanelByTheShortcut();
}

TEST_F(SettingsDesktop, ANewerVersionIsToldThoughTheSettingsWereNeverOpened) {
    server().answer("/feed.json", jsonAnswer(200, R"({"version":"99.1","url":"https://example.com/new"})"));
    writeDefaults({{"updateFeedURL", server().url("/feed.json")}});
    start();
    awaitText("Quillmoth 99.1 is available.");
    EXPECT_TRUE(await("push button", "Not Now").press());
    awaitGone("99.1");
    eventually("the version is stored", [] { return defaults().value("toldUpdateVersion", "") == "99.1"; });
}

} // namespace quillmoth::test
