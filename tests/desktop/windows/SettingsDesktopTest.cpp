#include "tests/desktop/windows/WindowsSession.h"

#include <filesystem>
#include <linux/input-event-codes.h>
#include <xcb/xcb.h>

namespace quillmoth::test {

namespace {

using nlohmann::json;

constexpr const char* kSlot = "KeyboardShortcuts_showFloatingPanel";
constexpr const char* kPressShortcut = "Press shortcut…";
constexpr const char* kFeed = "/feed.json";
constexpr int kKeyK = 40;
constexpr int kKeySpace = 49;
constexpr int kControl = 0x100;
constexpr int kOption = 0x800;

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

    static json shortcut(int keyCode, int modifiers) {
        return {{"carbonKeyCode", keyCode}, {"carbonModifiers", modifiers}};
    }

    static json storedShortcut() {
        const json value = defaults().value(kSlot, json());
        return value.is_string() ? json::parse(value.get<std::string>()) : json();
    }

    /// It is written in the background.
    static void awaitShortcut(const json& shortcut) {
        eventually("the shortcut is stored", [&] { return storedShortcut() == shortcut; });
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
    awaitShortcut(shortcut(kKeySpace, kOption));
    EXPECT_FALSE(isOpen());
    record();
    input().chord({KEY_LEFTCTRL, KEY_LEFTALT, KEY_K});
    awaitRecorder("Ctrl+Alt+K");
    EXPECT_EQ(recorder().text(), "⌥⌘K");
    awaitShortcut(shortcut(kKeyK, kControl | kOption));
    togglePanelByTheShortcut();
}

TEST_F(SettingsDesktop, AShortcutThatAMenuTheDesktopOrAnotherProgramHasIsRefusedWithASheet) {
    // A program that holds F7, which the desktop's settings do not tell.
    constexpr xcb_keycode_t kF7 = KEY_F7 + 8;
    xcb_grab_key(desktop().connection(), 0, desktop().rootWindow(), 0, kF7, XCB_GRAB_MODE_ASYNC,
                 XCB_GRAB_MODE_ASYNC);
    xcb_flush(desktop().connection());
    open();
    constexpr const char* kDesktops = "since your desktop uses it already";

    struct Case {
        std::initializer_list<int> keys;
        const char* text;
    };

    for (const auto& [keys, text] :
         {Case{{KEY_LEFTCTRL, KEY_Q}, "since the menu item “Quit” has it already"},
          Case{{KEY_LEFTCTRL, KEY_LEFTALT, KEY_LEFT}, kDesktops}, Case{{KEY_F7}, kDesktops}}) {
        record();
        input().chord(keys);
        awaitText(text);
        // The window manager gives a new window the keyboard a moment later.
        EXPECT_TRUE(isFocused("push button OK"));
        input().tapKey(KEY_ENTER);
        awaitGone(text);
        // Another one can be pressed at once.
        awaitRecorder(kPressShortcut);
        endRecording();
        awaitShortcut(shortcut(kKeySpace, kOption));
    }
    xcb_ungrab_key(desktop().connection(), kF7, desktop().rootWindow(), 0);
    xcb_flush(desktop().connection());
}

TEST_F(SettingsDesktop, AClearedShortcutComesBackWithTheNextStart) {
    open();
    EXPECT_TRUE(await("push button", "Clear shortcut").press());
    awaitStored(kSlot, json());
    awaitRecorder(kPressShortcut);
    EXPECT_TRUE(recorder().isFocused());
    endRecording();
    quit();
    start();
    awaitShortcut(shortcut(kKeySpace, kOption));
    openPanel();
}

TEST_F(SettingsDesktop, AShortcutThatAnotherProcessStoresIsShownAndWorks) {
    open();
    json values = defaults();
    values[kSlot] = shortcut(kKeyK, kControl | kOption).dump();
    writeDefaults(values);
    awaitRecorder("Ctrl+Alt+K");
    togglePanelByTheShortcut();
}

TEST_F(SettingsDesktop, KeyAndModelHoldFromTheNextRequestOn) {
    constexpr const char* kKeyField = "OpenAI API Key:";
    const auto asksWith = [](const char* key, const char* model) {
        ask("one");
        EXPECT_EQ(chatRequests().back().header("Authorization"), std::string("Bearer ") + key);
        EXPECT_EQ(json::parse(chatRequests().back().body)["model"], model);
        awaitWindow("Settings");
    };
    open();
    EXPECT_TRUE(has("label", "Quillmoth is paying for your API usage"));
    tabTo("text", kKeyField);
    input().type("sk-first");
    awaitStored("openapikey", "sk-first");
    EXPECT_TRUE(shows("You are using your own key"));
    asksWith("sk-first", "gpt-3.5-turbo");
    tabTo("combo box", "gpt-3.5-turbo");
    input().tapKey(KEY_DOWN);
    input().tapKey(KEY_DOWN);
    awaitStored("model", "gpt-4");
    awaitText("Ensure that you're eligible to use GPT-4");
    EXPECT_TRUE(await("text", kKeyField).setText("sk-second"));
    awaitStored("openapikey", "sk-second");
    asksWith("sk-second", "gpt-4");
    EXPECT_TRUE(await("text", kKeyField).setText(""));
    awaitStored("model", "gpt-3.5-turbo");
    awaitGone("eligible to use GPT-4");
}

TEST_F(SettingsDesktop, TheLoginSwitchWritesAndRemovesTheAutostartEntry) {
    const std::string entry = session().path(".config/autostart/org.quillmoth.Quillmoth.desktop");
    open();
    const auto toggle = await("check box", "Launch at login 😀");
    const auto becomes = [&](bool isOn) {
        eventually("the entry follows the switch",
                   [&] { return std::filesystem::exists(entry) == isOn && toggle.isChecked() == isOn; });
    };
    becomes(false);
    click(toggle);
    becomes(true);
    tabTo("check box", "Launch at login 😀");
    input().tapKey(KEY_SPACE);
    becomes(false);
    EXPECT_TRUE(toggle.press());
    becomes(true);
}

TEST_F(SettingsDesktop, TheUpdateCheckSaysWhatTheFeedSays) {
    open();
    const auto button = await("push button", "Check for Updates…");
    EXPECT_FALSE(button.isEnabled()) << "no feed is configured";
    server().answer(kFeed, jsonAnswer(200, R"({"version":"0.1.0"})"));
    for (const auto& [address, text] :
         {std::pair(server().url(kFeed), "Quillmoth is up to date."),
          std::pair(std::string("http://127.0.0.1:1/feed"), "Could not check for updates.")}) {
        writeDefaults({{"updateFeedURL", address}});
        eventually("the button can be pressed", [&] { return button.isEnabled(); });
        EXPECT_TRUE(button.press());
        awaitText(text);
        EXPECT_TRUE(await("push button", "OK").press());
        awaitGone(text);
    }
}

TEST_F(SettingsDesktop, ANewerVersionIsToldThoughTheSettingsWereNeverOpened) {
    server().answer(kFeed, jsonAnswer(200, R"({"version":"99.1","url":"https://example.com/new"})"));
    writeDefaults({{"updateFeedURL", server().url(kFeed)}});
    start();
    awaitText("Quillmoth 99.1 is available.");
    EXPECT_TRUE(await("push button", "Not Now").press());
    awaitGone("99.1");
    eventually("the version is stored", [] { return defaults().value("toldUpdateVersion", "") == "99.1"; });
}

} // namespace quillmoth::test
