#include "tests/desktop/windows/ProgramDesktop.h"

#include <filesystem>
#include <linux/input-event-codes.h>
#include <xcb/xcb.h>

namespace quillmoth::test {

namespace {

using nlohmann::json;

constexpr const char* kSlot = "KeyboardShortcuts_showFloatingPanel";
constexpr const char* kRecorder = "Open Quillmoth Hotkey:";
constexpr const char* kPressShortcut = "Press shortcut…";
constexpr int kKeyK = 40;
constexpr int kControl = 0x100;
constexpr int kOption = 0x800;

class SettingsDesktop : public ProgramDesktop {
protected:
    void open() {
        run({"--settings"});
        awaitWindow("Settings");
    }

    AccessibleElement recorder() { return control("text", kRecorder); }

    void record() {
        clickOn(recorder());
        eventually("the recorder waits for a shortcut",
                   [&] { return recorder().description() == kPressShortcut; });
    }

    void endRecording() {
        input().tapKey(KEY_ESC);
        eventually("Escape ends the recording", [&] { return recorder().description() != kPressShortcut; });
    }

    static json storedShortcut() {
        const json value = defaults().value(kSlot, json());
        return value.is_string() ? json::parse(value.get<std::string>()) : json();
    }

    static bool isStored(int keyCode, int modifiers) {
        return storedShortcut() == json{{"carbonKeyCode", keyCode}, {"carbonModifiers", modifiers}};
    }

    void awaitSheet(const std::string& text) {
        eventually("a sheet says: " + text, [&] { return shows(text); });
    }

    void closeSheet(const std::string& text) {
        // The window manager gives a new window the keyboard a moment later.
        eventually("the sheet has the keyboard", [&] {
            const auto button = AccessibleElement::find(process(), "push button", "OK");
            return button && button->isFocused();
        });
        input().tapKey(KEY_ENTER);
        eventually("the sheet closes", [&] { return !shows(text); });
    }
};

} // namespace

TEST_F(SettingsDesktop, ARecordedShortcutOpensThePanelAndTheOneInForceCanBeRecordedAgain) {
    start();
    open();
    EXPECT_TRUE(isStored(49, kOption)) << defaults();
    record();
    // The hot key that is grabbed at this moment goes to the recorder, and opens nothing.
    input().chord({KEY_LEFTALT, KEY_SPACE});
    eventually("the recording has ended", [&] { return recorder().description() == "Alt+Space"; });
    EXPECT_TRUE(isStored(49, kOption)) << defaults();
    EXPECT_FALSE(isPanelVisible());
    record();
    input().chord({KEY_LEFTCTRL, KEY_LEFTALT, KEY_K});
    eventually("the shortcut is stored", [] { return isStored(kKeyK, kControl | kOption); });
    eventually("it is shown", [&] { return recorder().text() == "⌥⌘K"; });
    EXPECT_EQ(recorder().description(), "Ctrl+Alt+K");
    input().chord({KEY_LEFTCTRL, KEY_LEFTALT, KEY_K});
    eventually("the shortcut opens the panel", [] { return isPanelVisible(); });
    input().chord({KEY_LEFTCTRL, KEY_LEFTALT, KEY_K});
    eventually("the shortcut closes the panel", [] { return !isPanelVisible(); });
}

TEST_F(SettingsDesktop, AShortcutThatAMenuTheDesktopOrAnotherProgramHasIsRefusedWithASheet) {
    // A program that holds F7, which the desktop's settings do not tell.
    constexpr xcb_keycode_t kF7 = KEY_F7 + 8;
    xcb_grab_key(desktop().connection(), 0, desktop().rootWindow(), 0, kF7, XCB_GRAB_MODE_ASYNC,
                 XCB_GRAB_MODE_ASYNC);
    xcb_flush(desktop().connection());
    start();
    open();

    struct Case {
        std::initializer_list<int> keys;
        const char* text;
    };

    for (const auto& [keys, text] :
         {Case{{KEY_LEFTCTRL, KEY_Q}, "since the menu item “Quit” has it already"},
          Case{{KEY_LEFTCTRL, KEY_LEFTALT, KEY_LEFT}, "since your desktop uses it already"},
          Case{{KEY_F9}, "since the menu item “Toggle Sidebar” has it already"},
          Case{{KEY_F7}, "since your desktop uses it already"}}) {
        record();
        input().chord(keys);
        awaitSheet(text);
        closeSheet(text);
        eventually("another shortcut can be pressed at once",
                   [&] { return recorder().description() == kPressShortcut; });
        endRecording();
        EXPECT_TRUE(isStored(49, kOption)) << defaults();
    }
    EXPECT_TRUE(isRunning());
    xcb_ungrab_key(desktop().connection(), kF7, desktop().rootWindow(), 0);
    xcb_flush(desktop().connection());
}

TEST_F(SettingsDesktop, AClearedShortcutComesBackWithTheNextStart) {
    start();
    open();
    EXPECT_TRUE(control("push button", "Clear shortcut").press());
    eventually("the slot is empty", [] { return !defaults().contains(kSlot); });
    eventually("the recorder goes on recording",
               [&] { return recorder().description() == kPressShortcut && recorder().isFocused(); });
    endRecording();
    quit();
    start();
    EXPECT_TRUE(isStored(49, kOption)) << defaults();
    input().chord({KEY_LEFTALT, KEY_SPACE});
    eventually("Alt+Space opens the panel", [] { return isPanelVisible(); });
}

TEST_F(SettingsDesktop, AShortcutThatAnotherProcessStoresIsShownAndWorks) {
    start();
    open();
    json values = defaults();
    values[kSlot] = R"({"carbonKeyCode":40,"carbonModifiers":2304})";
    writeDefaults(values);
    eventually("it is shown", [&] { return recorder().description() == "Ctrl+Alt+K"; });
    input().chord({KEY_LEFTCTRL, KEY_LEFTALT, KEY_K});
    eventually("it opens the panel", [] { return isPanelVisible(); });
}

TEST_F(SettingsDesktop, KeyAndModelHoldFromTheNextRequestOn) {
    start();
    open();
    EXPECT_TRUE(has("label", "Quillmoth is paying for your API usage"));
    tabTo("text", "OpenAI API Key:");
    input().type("sk-first");
    eventually("the key is stored", [] { return defaults().value("openapikey", "") == "sk-first"; });
    EXPECT_TRUE(shows("You are using your own key"));
    ask("one");
    EXPECT_EQ(chatRequests().back().header("Authorization"), "Bearer sk-first");
    EXPECT_EQ(json::parse(chatRequests().back().body)["model"], "gpt-3.5-turbo");
    awaitWindow("Settings");
    tabTo("combo box", "gpt-3.5-turbo");
    input().tapKey(KEY_DOWN);
    input().tapKey(KEY_DOWN);
    eventually("the model is stored", [] { return defaults().value("model", "") == "gpt-4"; });
    eventually("the warning shows", [&] { return shows("Ensure that you're eligible to use GPT-4"); });
    EXPECT_TRUE(control("text", "OpenAI API Key:").setText("sk-second"));
    eventually("what a screen reader sets is stored",
               [] { return defaults().value("openapikey", "") == "sk-second"; });
    ask("two");
    EXPECT_EQ(chatRequests().back().header("Authorization"), "Bearer sk-second");
    EXPECT_EQ(json::parse(chatRequests().back().body)["model"], "gpt-4");
    EXPECT_TRUE(control("text", "OpenAI API Key:").setText(""));
    eventually("without a key the model is the one that needs none",
               [] { return defaults().value("model", "") == "gpt-3.5-turbo"; });
    eventually("the warning goes", [&] { return !shows("eligible to use GPT-4"); });
}

TEST_F(SettingsDesktop, TheLoginSwitchWritesAndRemovesTheAutostartEntry) {
    const std::string entry =
        desktop().homeDirectory() + "/.config/autostart/org.quillmoth.Quillmoth.desktop";
    const auto isThere = [&] { return std::filesystem::exists(entry); };
    start();
    open();
    const auto toggle = control("check box", "Launch at login 😀");
    EXPECT_FALSE(toggle.isChecked());
    clickOn(toggle);
    eventually("a click switches it on", [&] { return isThere() && toggle.isChecked(); });
    tabTo("check box", "Launch at login 😀");
    input().tapKey(KEY_SPACE);
    eventually("the space bar switches it off", [&] { return !isThere() && !toggle.isChecked(); });
    EXPECT_TRUE(toggle.press());
    eventually("a screen reader switches it on", [&] { return isThere() && toggle.isChecked(); });
}

TEST_F(SettingsDesktop, TheUpdateCheckSaysWhatTheFeedSays) {
    start();
    open();
    const auto button = control("push button", "Check for Updates…");
    EXPECT_FALSE(button.isEnabled()) << "no feed is configured";

    struct Case {
        const char* feed;
        const char* text;
        const char* closing;
    };

    for (const auto& [feed, text, closing] :
         {Case{R"({"version":"99.1","url":"https://example.com/new","notes":"Faster."})",
               "Quillmoth 99.1 is available.", "Not Now"},
          Case{R"({"version":"0.1.0"})", "Quillmoth is up to date.", "OK"},
          Case{R"({"version":)", "Could not check for updates.", "OK"},
          Case{nullptr, "Could not check for updates.", "OK"}}) {
        if (feed)
            server().answer("/feed.json", jsonAnswer(200, feed));
        // Nobody listens at the last one.
        writeDefaults({{"updateFeedURL", feed ? server().url("/feed.json") : "http://127.0.0.1:1/feed"}});
        eventually("the button can be pressed", [&] { return button.isEnabled(); });
        EXPECT_TRUE(button.press());
        awaitSheet(text);
        EXPECT_TRUE(control("push button", closing).press());
        eventually("the sheet closes", [&] { return !shows(text); });
    }
}

TEST_F(SettingsDesktop, ANewerVersionIsToldThoughTheSettingsWereNeverOpened) {
    server().answer("/feed.json", jsonAnswer(200, R"({"version":"99.1","url":"https://example.com/new"})"));
    writeDefaults({{"updateFeedURL", server().url("/feed.json")}});
    start();
    awaitSheet("Quillmoth 99.1 is available.");
    EXPECT_TRUE(control("push button", "Not Now").press());
    eventually("the notice closes", [&] { return !shows("99.1"); });
    EXPECT_EQ(defaults().value("toldUpdateVersion", ""), "99.1");
}

TEST_F(SettingsDesktop, TheConnectionIsTestedInWords) {
    writeDefaults({{"openapikey", "sk-moth"}});
    server().answer("/v1/models", [](const ScriptedRequest& request) {
        return request.header("Authorization") == "Bearer sk-moth"
                   ? jsonAnswer(200, R"({"data":[{"id":"gpt-3.5-turbo"},{"id":"moth-1"}]})")
                   : jsonAnswer(401, "{}");
    });
    start();
    open();
    const auto test = [&](const std::string& words) {
        EXPECT_TRUE(control("push button", "Test connection").press());
        eventually("the answer is: " + words, [&] { return shows(words); });
    };
    test("It offers 2 models, “gpt-3.5-turbo” among them.");
    EXPECT_TRUE(control("text", "OpenAI API Key:").setText("sk-wrong"));
    test("refused the key (401).");
    EXPECT_TRUE(control("text", "Server address").setText("http://127.0.0.1:1"));
    test("Could not connect to http://127.0.0.1:1");
    EXPECT_TRUE(control("text", "Server address").setText("somewhere"));
    test("“somewhere” is no address");
    EXPECT_TRUE(control("push button", "Hide the key").press());
    eventually("the key is hidden", [&] { return has("password text", "OpenAI API Key:"); });
    EXPECT_FALSE(shows("sk-wrong"));
    EXPECT_TRUE(control("push button", "Show the key").press());
    eventually("the key is shown", [&] { return shows("sk-wrong"); });
}

} // namespace quillmoth::test
