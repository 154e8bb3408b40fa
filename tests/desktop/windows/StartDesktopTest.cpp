#include "tests/desktop/windows/WindowsSession.h"

#include <cstdint>
#include <fstream>
#include <linux/input-event-codes.h>
#include <map>
#include <sstream>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

using nlohmann::json;

/// Accessibility switched off on the desktop, for one test.
class AccessibilityOff {
public:
    AccessibilityOff() { set(false); }

    ~AccessibilityOff() { set(true); }

    AccessibilityOff(const AccessibilityOff&) = delete;
    AccessibilityOff& operator=(const AccessibilityOff&) = delete;

    static bool isOn() { return call({"Get"}).find("boolean true") != std::string::npos; }

private:
    static void set(bool on) { call({"Set", on ? "variant:boolean:true" : "variant:boolean:false"}); }

    static std::string call(std::vector<std::string> what) {
        what.front() = "org.freedesktop.DBus.Properties." + what.front();
        what.insert(what.begin() + 1, {"string:org.a11y.Status", "string:IsEnabled"});
        what.insert(what.begin(),
                    {"dbus-send", "--session", "--print-reply", "--dest=org.a11y.Bus", "/org/a11y/bus"});
        return runChild(what, 5s).output;
    }
};

class StartDesktop : public WindowsSession {
protected:
    /// Calls a method of the freedesktop Application interface.
    static ChildResult call(const std::vector<std::string>& arguments) {
        std::vector<std::string> command = {"gdbus", "call", "--session", "--dest",
                                            "org.quillmoth.Quillmoth"};
        command.insert(command.end(), {"--object-path", "/org/quillmoth/Quillmoth", "--method"});
        command.insert(command.end(), arguments.begin(), arguments.end());
        return runChild(command, 20s);
    }

    static void callsAndSees(const std::vector<std::string>& arguments,
                             const std::function<bool()>& condition) {
        const ChildResult result = call(arguments);
        EXPECT_EQ(result.exitCode, 0) << result.output;
        eventually(arguments.front() + " works", condition);
    }

    static ChildProcess startTray() {
        ChildProcess tray({"trayer", "--edge", "bottom", "--align", "right", "--widthtype", "pixel",
                           "--width", "40", "--heighttype", "pixel", "--height", "40"});
        eventually("there is a tray", [] { return hasWindow("panel"); });
        return tray;
    }

    static bool trayHas(std::uint32_t color) {
        return hasColor(windows().geometry(windows().windowTitled("panel").value()), color);
    }

    /// The commands of the launcher entry's actions.
    static std::map<std::string, std::vector<std::string>> launcherActions() {
        std::map<std::string, std::vector<std::string>> result;
        std::ifstream file(QUILLMOTH_DESKTOP_FILE);
        std::string action;
        for (std::string line; std::getline(file, line);) {
            if (line.starts_with("[Desktop Action "))
                action = line.substr(16, line.size() - 17);
            if (action.empty() || !line.starts_with("Exec=quillmoth "))
                continue;
            std::istringstream words(line.substr(15));
            for (std::string word; words >> word;)
                result[action].push_back(word);
        }
        return result;
    }
};

} // namespace

TEST_F(StartDesktop, TheFirstStartShowsTwoPagesThenTheSettingsAndNoLaterOneDoes) {
    writeDefaults({{"firstTime", true}});
    start();
    awaitWindow("Onboarding");
    eventually("it is stored", [] { return !defaults().value("firstTime", true); });
    awaitText("Welcome to");
    EXPECT_TRUE(shows("Privacy"));
    input().tapKey(KEY_ENTER);
    awaitText("Resend the Last Prompt");
    EXPECT_FALSE(shows("Welcome to"));
    EXPECT_TRUE(has("label", "Ctrl+Shift+C"));
    click(await("push button", "Continue"));
    awaitWindow("Settings");
    EXPECT_FALSE(hasWindow("Onboarding"));
    quit();
    start();
    run({"--settings"});
    awaitWindow("Settings");
    EXPECT_FALSE(hasWindow("Onboarding"));
    run({"quillmoth://onboardingView"});
    awaitWindow("Onboarding");
    awaitText("Welcome to");
}

TEST_F(StartDesktop, TheQuestionForAccessibilityComesByItselfAndOnceAndItsAnswerCanBeTakenBack) {
    const AccessibilityOff off;
    const auto answer = [] { return defaults().value("accessibilityConsent", json()); };
    writeDefaults({{"accessibilityConsent", nullptr}});
    start();
    awaitWindow("Accessibility");
    closeWindow("Accessibility");
    EXPECT_EQ(answer(), json()) << "closing the window is no answer";
    quit();

    writeDefaults({{"firstTime", true}, {"accessibilityConsent", nullptr}});
    start({"--toggle"});
    awaitWindow("Onboarding");
    awaitText("Welcome to");
    run({});
    input().tapKey(KEY_ENTER);
    awaitText("for this desktop?");
    EXPECT_FALSE(hasWindow("Accessibility"));
    input().tapKey(KEY_ENTER);
    awaitText("Resend the Last Prompt");
    EXPECT_EQ(answer(), json(false));
    EXPECT_FALSE(isOpen()) << "nothing covers the first steps";
    quit();

    start();
    run({"--toggle"});
    awaitText("You have not enabled accessibility");
    EXPECT_FALSE(hasWindow("Accessibility")) << "it is asked once";
    EXPECT_TRUE(await("push button", "Switch on accessibility in Settings").press());
    awaitWindow("Settings");
    EXPECT_FALSE(isOpen());
    click(await("check box", "Switch on accessibility for this desktop"));
    eventually("it is switched on", [] { return AccessibilityOff::isOn(); });
    EXPECT_EQ(answer(), json(true));
}

TEST_F(StartDesktop, WithoutADisplayEachStartSaysSoInWords) {
    const std::string program = ProgramSession::program();

    struct Case {
        std::string display;
        std::string arguments;
        const char* words;
    };

    for (const auto& [display, arguments, words] :
         {Case{"-u DISPLAY", "", "quillmoth: There is no display to show windows on: neither DISPLAY nor"},
          Case{"DISPLAY=:60987", "--toggle", "the X server \":60987\" does not answer"},
          Case{"-u DISPLAY", "--diagnose", "Accessibility bus: enabled\n"},
          Case{"-u DISPLAY QT_QPA_PLATFORM=nothing", "", "no display to show windows on: Qt cannot use"}}) {
        const ChildResult result = runChild(
            {"sh", "-c", "env -u WAYLAND_DISPLAY " + display + ' ' + program + ' ' + arguments}, 20s);
        EXPECT_EQ(result.exitCode, 1) << result.output;
        EXPECT_NE(result.output.find(words), std::string::npos) << result.output;
    }
}

TEST_F(StartDesktop, TheTraysSymbolFollowsTheDesktopBetweenLightAndDark) {
    const ChildProcess tray = startTray();
    start();
    const auto prefers = [](const char* scheme) {
        runChild({"dbus-send", "--session", "--type=signal", "/org/freedesktop/portal/desktop",
                  "org.freedesktop.portal.Settings.SettingChanged", "string:org.freedesktop.appearance",
                  "string:color-scheme", std::string("variant:uint32:") + scheme},
                 5s);
    };
    constexpr std::uint32_t kInk = 0x1D1D22;
    constexpr std::uint32_t kChalk = 0xF2F2F7;
    eventually("the symbol is dark on a light desktop", [] { return trayHas(kInk) && !trayHas(kChalk); });
    prefers("1");
    eventually("it turns light", [] { return trayHas(kChalk) && !trayHas(kInk); });
    prefers("2");
    eventually("it turns dark", [] { return trayHas(kInk) && !trayHas(kChalk); });
}

TEST_F(StartDesktop, TheTrayItemOpensAMenuWhoseKeysWork) {
    const ChildProcess tray = startTray();
    start();
    EXPECT_EQ(session().output().find("shows no tray"), std::string::npos) << session().output();
    const auto clickTray = [&] {
        const auto bar = windows().geometry(windows().windowTitled("panel").value());
        // The item comes when the tray has taken it in; a click before that meets nothing.
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
        clickTray();
        eventually("the menu's key works", [&] {
            input().chord({KEY_LEFTCTRL, key});
            return holdsWithin(2s, isDone);
        });
    };
    pressInMenu(KEY_2, [] { return hasWindow("Prompt Editor"); });
    awaitWindow("Prompt Editor");
    closeWindow("Prompt Editor");
    pressInMenu(KEY_1, [] { return hasWindow("Onboarding"); });
    awaitWindow("Onboarding");
    closeWindow("Onboarding");
    clickTray();
    // The third of four items, all of one height, with a separator before the last.
    const DesktopRectangle place = windows().geometry(openMenu());
    input().click(place.x + place.width / 2, place.y + place.height * 11 / 20);
    awaitWindow("Settings");
    eventually("the menu has closed", [&] { return openMenu() == 0; });
    pressInMenu(KEY_Q, [&] { return !session().isRunning(); });
}

TEST_F(StartDesktop, WithoutATrayTheLauncherHasTheMenuAndASecondStartAsksTheFirst) {
    start();
    eventually("the output says how to reach the program",
               [&] { return session().output().find("This desktop shows no tray.") != std::string::npos; });
    const auto actions = launcherActions();
    ASSERT_EQ(actions.size(), 5U);
    run(actions.at("toggle"));
    eventually("the launcher opens the panel", isOpen);
    run(actions.at("toggle"));
    eventually("the launcher closes the panel", [] { return !isOpen(); });
    for (const auto& [action, title] :
         {std::pair("get-started", "Onboarding"), std::pair("prompt-editor", "Prompt Editor"),
          std::pair("settings", "Settings")}) {
        run(actions.at(action));
        awaitWindow(title);
        closeWindow(title);
    }
    run({});
    eventually("a plain second start shows the panel", isOpen);
    run(actions.at("quit"));
    eventually("the launcher ends the program", [&] { return !session().isRunning(); });
}

TEST_F(StartDesktop, TheBusReachesTheProgramByTheFreedesktopApplicationInterface) {
    start();
    const std::string interface = "org.freedesktop.Application.";
    callsAndSees({interface + "Activate", "{}"}, isOpen);
    callsAndSees({interface + "ActivateAction", "toggle", "[]", "{}"}, [] { return !isOpen(); });
    callsAndSees({interface + "Open", "['quillmoth://promptEditor']", "{}"},
                 [] { return hasWindow("Prompt Editor"); });
    callsAndSees({interface + "ActivateAction", "settings", "[]", "{}"},
                 [] { return hasWindow("Settings"); });
    EXPECT_NE(call({interface + "ActivateAction", "dance", "[]", "{}"}).exitCode, 0);
    callsAndSees({interface + "ActivateAction", "quit", "[]", "{}"}, [&] { return !session().isRunning(); });
}

} // namespace quillmoth::test
