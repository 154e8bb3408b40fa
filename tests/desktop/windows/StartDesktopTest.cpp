#include "tests/desktop/windows/WindowsSession.h"

#include <csignal>
#include <cstdint>
#include <linux/input-event-codes.h>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

using nlohmann::json;

class StartDesktop : public WindowsSession {
protected:
    void SetUp() override {
        VirtualDesktop::setAccessible(true);
        WindowsSession::SetUp();
    }

    static json consent() { return defaults().value("accessibilityConsent", json()); }

    /// A start as the action of the launcher entry does it.
    static void runAction(const std::string& action) {
        std::string argument =
            runChild({"sed", "-n", "/^\\[Desktop Action " + action + "]/,/^Exec/s/^Exec=quillmoth //p",
                      QUILLMOTH_DESKTOP_FILE},
                     5s)
                .output;
        ASSERT_FALSE(argument.empty()) << action;
        argument.pop_back();
        run({argument});
    }
};

} // namespace

TEST_F(StartDesktop, TheFirstStartShowsItsPagesAndTheSettingsAndAccessibilityIsAskedForOnce) {
    VirtualDesktop::setAccessible(false);
    writeDefaults({{"accessibilityConsent", nullptr}});
    start();
    awaitWindow("Accessibility");
    closeWindow("Accessibility");
    EXPECT_EQ(consent(), json()) << "closing the window is no answer";
    quit();

    writeDefaults({{"firstTime", true}, {"accessibilityConsent", nullptr}});
    start({"--toggle"});
    awaitWindow("Onboarding");
    awaitText("Welcome to");
    input().tapKey(KEY_ENTER);
    awaitText("for this desktop?");
    EXPECT_FALSE(hasWindow("Accessibility"));
    input().tapKey(KEY_ENTER);
    awaitText("Resend the Last Prompt");
    EXPECT_EQ(consent(), json(false));
    EXPECT_FALSE(isOpen()) << "nothing covers the first steps";
    click(await("push button", "Continue"));
    awaitWindow("Settings");
    quit();

    start();
    run({"--toggle"});
    awaitText("You have not enabled accessibility");
    EXPECT_FALSE(hasWindow("Accessibility") || hasWindow("Onboarding"));
    EXPECT_TRUE(await("push button", "Switch on accessibility in Settings").press());
    awaitWindow("Settings");
    EXPECT_FALSE(isOpen());
    click(await("check box", "Switch on accessibility for this desktop"));
    eventually("it is switched on", [] {
        return runChild({"gdbus", "call", "--session", "-d", "org.a11y.Bus", "-o", "/org/a11y/bus", "-m",
                         "org.freedesktop.DBus.Properties.Get", "org.a11y.Status", "IsEnabled"},
                        5s)
                   .output.find("true") != std::string::npos;
    });
    EXPECT_EQ(consent(), json(true));
}

TEST_F(StartDesktop, AStartThatCannotGoOnSaysWhyInWords) {
    const std::tuple<std::string, int, const char*> cases[] = {
        {"-u DISPLAY $PROGRAM", 1, "no display to show windows on: neither DISPLAY nor"},
        {"DISPLAY=:60987 $PROGRAM --toggle", 1, "the X server \":60987\" does not answer"},
        {"-u DISPLAY $PROGRAM --diagnose", 1, "Accessibility bus: enabled\n"},
        {"-u DISPLAY QT_QPA_PLATFORM=nothing $PROGRAM", 1, "show windows on: Qt cannot use"},
        {"$PROGRAM --quit", 1, "quillmoth: Quillmoth is not running.\n"},
        {"DBUS_SESSION_BUS_ADDRESS=unix:path=/no $PROGRAM --quit", 1, "Quillmoth is not running.\n"},
        {"$PROGRAM --tggle", 2, "\"--tggle\""},
        {"$PROGRAM --version", 0, "Quillmoth "},
        {"$PROGRAM --help", 0, "--toggle"},
    };
    for (const auto& [command, exitCode, words] : cases) {
        const ChildResult result = runChild({"sh", "-c", "env -u WAYLAND_DISPLAY " + command}, 20s,
                                            {.environment = {{"PROGRAM", ProgramSession::program()}}});
        EXPECT_EQ(result.exitCode, exitCode) << command;
        EXPECT_NE(result.output.find(words), std::string::npos) << result.output;
    }
}

TEST_F(StartDesktop, AConversationOnScreenIsInTheHistoryThoughTheProgramIsKilled) {
    writeDefaults({{"openapikey", "sk"}});
    start();
    openPanel();
    input().type("one\n");
    awaitText("answer.");
    eventually("it is on the disk", [] {
        return session().readFile("Documents/Quillmoth/QuillmothOpen.jsonl").find("answer.") !=
               std::string::npos;
    });
    kill(session().process(), SIGKILL);
    session().kill();
    start();
    eventually("it is in the history", [] {
        return session().readFile(ProgramSession::kHistory).find("The answer.") != std::string::npos;
    });
}

TEST_F(StartDesktop, ATrayThatAppearsGetsTheSymbolWhichFollowsTheDesktopAndOpensAMenuWithKeys) {
    start();
    eventually("the output says how to reach the program",
               [] { return session().output().find("This desktop shows no tray.") != std::string::npos; });
    const ChildProcess tray({"trayer", "--edge", "bottom", "--align", "right", "--widthtype", "pixel",
                             "--width", "40", "--heighttype", "pixel", "--height", "40"});
    eventually("there is a tray", [] { return hasWindow("panel"); });
    const DesktopRectangle bar = windows().geometry(windows().windowTitled("panel").value());
    constexpr std::uint32_t kInk = 0x1D1D22;
    constexpr std::uint32_t kChalk = 0xF2F2F7;
    const auto awaitColor = [&](std::uint32_t color) {
        eventually("the symbol has its color",
                   [&] { return hasColor(bar, color) && !hasColor(bar, color == kInk ? kChalk : kInk); });
    };
    awaitColor(kInk);
    for (const auto& [scheme, color] : {std::pair("1", kChalk), std::pair("2", kInk)}) {
        runChild({"dbus-send", "--session", "--type=signal", "/org/freedesktop/portal/desktop",
                  "org.freedesktop.portal.Settings.SettingChanged", "string:org.freedesktop.appearance",
                  "string:color-scheme", std::string("variant:uint32:") + scheme},
                 5s);
        awaitColor(color);
    }
    const auto openTrayMenu = [&] {
        eventually("a click on the item opens the menu", [&] {
            // As a hand does. A release right behind the press can close the menu that the press opens.
            input().movePointer(bar.x + bar.width / 2, bar.y + bar.height / 2);
            letPass(40ms);
            input().pressButton(1);
            letPass(80ms);
            input().releaseButton(1);
            return holdsWithin(1s, [&] { return openMenu() != 0; });
        });
    };
    // A menu takes the keyboard a moment after it shows; a key before that meets nothing.
    const auto pressInMenu = [&](int key, const std::function<bool()>& isDone) {
        openTrayMenu();
        eventually("the menu's key works", [&] {
            input().chord({KEY_LEFTCTRL, key});
            return holdsWithin(2s, isDone);
        });
    };
    pressInMenu(KEY_2, [] { return hasWindow("Prompt Editor"); });
    openTrayMenu();
    // The third of four items, all of one height, with a separator before the last.
    const DesktopRectangle place = windows().geometry(openMenu());
    input().click(place.x + place.width / 2, place.y + place.height * 11 / 20);
    awaitWindow("Settings");
    eventually("the menu has closed", [&] { return openMenu() == 0; });
    pressInMenu(KEY_Q, [&] { return !session().isRunning(); });
}

TEST_F(StartDesktop, TheLauncherHasTheMenuTooAndASecondStartAsksTheFirst) {
    start();
    runAction("toggle");
    eventually("the launcher opens the panel", isOpen);
    runAction("toggle");
    eventually("the launcher closes the panel", [] { return !isOpen(); });
    for (const auto& [action, title] :
         {std::pair("get-started", "Onboarding"), std::pair("prompt-editor", "Prompt Editor"),
          std::pair("settings", "Settings")}) {
        runAction(action);
        awaitWindow(title);
        closeWindow(title);
    }
    run({});
    eventually("a plain second start shows the panel", isOpen);
    runAction("quit");
    eventually("the launcher ends the program", [&] { return !session().isRunning(); });
}

TEST_F(StartDesktop, ALinkImportsAPresetIntoTheRunningProgramAndStartsTheOneThatDoesNotRun) {
    const auto awaitNames = [](const std::string& what, const std::vector<std::string>& expected) {
        eventually(what, [&] {
            std::vector<std::string> names;
            for (const auto& entry : presets())
                names.push_back(entry.value("name", ""));
            return names == expected;
        });
    };
    session().writeFile(ProgramSession::kPresets, R"([{"emoji": "🦉", "name": "One", "prompt": "p"}])");
    start();
    // A program that was built and not installed makes itself the handler of its links.
    eventually("the scheme has a handler", [] {
        return runChild({"xdg-mime", "query", "default", "x-scheme-handler/quillmoth"}, 5s)
                   .output.find("quillmoth-links.desktop") != std::string::npos;
    });
    const std::string link =
        "quillmoth://add?a=1&data=%7B%22id%22%3A%22x%22%2C%22emoji%22%3A%22%F0%9F%A6%89%22%2C%22name%22%3A%22"
        "Summary%22%2C%22prompt%22%3A%22Summarise%3A%20%7Bselected%20text%7D%22%7D&data=no";
    const ChildResult opened = runChild({"xdg-open", link}, 20s);
    EXPECT_EQ(opened.exitCode, 0) << opened.output;
    awaitWindow("Add a Preset?");
    awaitText("Summarise: {selected text}");
    EXPECT_EQ(presets().size(), 1U) << "nothing is added before the answer";
    EXPECT_TRUE(await("push button", "Add Preset").press());
    awaitNames("the running program imports it", {"One", "Summary"});
    awaitWindow("Prompt Editor");
    json imported = presets()[1];
    EXPECT_NE(imported.value("id", ""), "x");
    imported.erase("id");
    EXPECT_EQ(imported,
              (json{{"emoji", "🦉"}, {"name", "Summary"}, {"prompt", "Summarise: {selected text}"}}));
    awaitText("Summarise: {selected text}");
    quit();
    // What xdg-open starts stays in its process group, and so with this test.
    ChildProcess opener({"xdg-open", link});
    awaitWindow("Add a Preset?");
    run({"--quit"});
    awaitNames("the link starts the program, which asks too", {"One", "Summary"});
    EXPECT_TRUE(opener.waitForExit(20s).has_value());
}

} // namespace quillmoth::test
