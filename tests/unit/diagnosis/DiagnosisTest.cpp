#include "Quillmoth/Diagnosis/Diagnosis.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <tuple>

namespace quillmoth {
namespace {

DesktopFacts goodDesktop() {
    return {.sessionType = "x11",
            .displayProblem = {},
            .hasSessionBus = true,
            .hasXServer = true,
            .windowManager = "Openbox",
            .hasCompositor = true,
            .isRunning = true,
            .hotKey = "Alt+Space",
            .isHotKeyShared = false,
            .keyPlace = DesktopFacts::KeyPlace::keyring,
            .keyring = DesktopFacts::Keyring::locked,
            .answersAccessibility = true,
            .isAccessibilityEnabled = true,
            .front = DesktopFacts::Front{.program = "mousepad",
                                         .toolkit = "gtk",
                                         .hasFocus = true,
                                         .hasText = true,
                                         .isEditable = true,
                                         .takesEdits = true},
            .clipboard = {.hasOwner = true, .answers = true, .hasManager = true},
            .hasTray = true,
            .hasPortal = true};
}

std::string page(const DesktopFacts& facts) {
    std::string text;
    for (const std::string& line : diagnosis(facts))
        text += line + "\n";
    return text;
}

} // namespace

TEST(Diagnosis, WhereAllIsWellNothingIsToBeDone) {
    EXPECT_EQ(page(goodDesktop()), "Session: x11, with an X server\n"
                                   "Window manager: Openbox\n"
                                   "Compositor: running\n"
                                   "Hot key: Alt+Space, active\n"
                                   "Key: in the keyring, locked until the first request\n"
                                   "Accessibility bus: enabled\n"
                                   "Program in front: mousepad (gtk)\n"
                                   "Capture: through accessibility\n"
                                   "Write-back: through accessibility\n"
                                   "Clipboard: works; a clipboard manager runs\n"
                                   "Tray: there\n"
                                   "Desktop portal: there\n");
}

TEST(Diagnosis, EachFaultComesWithWhatToDoAboutIt) {
    const std::tuple<void (*)(DesktopFacts&), const char*, const char*> cases[] = {
        {[](DesktopFacts& f) { f.hasXServer = false; }, "Session: x11, without an X server", "--toggle"},
        {[](DesktopFacts& f) { f.windowManager.clear(); }, "Window manager: none", "EWMH"},
        {[](DesktopFacts& f) { f.hotKey.clear(); }, "Hot key: none", "record one"},
        {[](DesktopFacts& f) { f.hasXServer = !(f.hotKey = "").empty(); },
         "Hot key: none; one needs an X server", "bind"},
        {[](DesktopFacts& f) { f.isRunning = false; }, "Quillmoth does not run", "start Quillmoth"},
        {[](DesktopFacts& f) { f.isHotKeyShared = true; }, "Openbox has it too", "record another"},
        {[](DesktopFacts& f) { f.keyring = DesktopFacts::Keyring::absent; }, "which does not answer",
         "fill the key in"},
        {[](DesktopFacts& f) { f.answersAccessibility = false; }, "does not answer", "at-spi2-core"},
        {[](DesktopFacts& f) { f.isAccessibilityEnabled = false; }, "not enabled", "in the settings"},
        {[](DesktopFacts& f) { f.front.reset(); }, "Program in front: none", "click"},
        {[](DesktopFacts& f) { f.front->isHung = true; }, "does not answer", "wait"},
        {[](DesktopFacts& f) {
             f.front = DesktopFacts::Front{.program = "old", .obstacle = CaptureObstacle::nothingSelected};
         },
         "shows nothing", "restart it"},
        {[](DesktopFacts& f) { f.front->isEditable = false; }, "nothing there can be edited", "Ctrl+Shift+C"},
        {[](DesktopFacts& f) { f.clipboard.answers = false; }, "its owner does not answer", "copy something"},
        {[](DesktopFacts& f) { f.clipboard = {}; }, "empty; no clipboard manager", "install"},
        {[](DesktopFacts& f) { f.clipboard.hasManager = false; }, "no clipboard manager", "install"},
        {[](DesktopFacts& f) { f.hasTray = false; }, "Tray: none", "--settings"},
    };
    for (const auto& [spoil, state, advice] : cases) {
        DesktopFacts facts = goodDesktop();
        spoil(facts);
        const auto lines = diagnosis(facts);
        EXPECT_TRUE(std::any_of(lines.begin(), lines.end(),
                                [&](const std::string& line) {
                                    const auto arrow = line.find("\n    -> ");
                                    return line.find(state) < arrow && arrow != std::string::npos &&
                                           line.find(advice, arrow) != std::string::npos;
                                }))
            << state << "\n"
            << page(facts);
    }
}

TEST(Diagnosis, WithoutADisplayItTellsWhatCanBeKnown) {
    DesktopFacts facts = goodDesktop();
    facts.displayProblem = "DISPLAY is not set";
    EXPECT_EQ(page(facts), "Session: x11, without a display\n    -> DISPLAY is not set\n"
                           "Hot key: Alt+Space\nQuillmoth: runs in this session\n"
                           "Key: in the keyring, locked until the first request\n"
                           "Accessibility bus: enabled\nDesktop portal: there\n");
    facts.hasSessionBus = false;
    EXPECT_NE(page(facts).find("Session bus: none\n    -> "), std::string::npos);
    EXPECT_EQ(page(facts).find("Accessibility"), std::string::npos);
}

TEST(Diagnosis, OnWaylandNothingIsSaidOfAnXServer) {
    DesktopFacts facts = goodDesktop();
    facts.sessionType = "wayland";
    facts.hasXServer = false;
    facts.isToolkitOnWayland = true;
    facts.front->takesPaste = facts.front->takesEdits = false;
    const std::string text = page(facts);
    for (const char* told : {"Session: wayland\n", "Hot key: Alt+Space, not active on Wayland\n    -> bind",
                             "Capture: through accessibility\n", "Write-back: not possible"})
        EXPECT_NE(text.find(told), std::string::npos) << text;
    for (const char* wrong : {"X server", "Compositor", "Window manager", "Clipboard"})
        EXPECT_EQ(text.find(wrong), std::string::npos) << text;
    facts.isToolkitOnWayland = false;
    EXPECT_NE(page(facts).find("install the package qt6-wayland"), std::string::npos);
}

TEST(Diagnosis, TellsWhatTheCompositorServesAndWhatItDoesNot) {
    DesktopFacts facts = goodDesktop();
    facts.sessionType = "wayland";
    facts.hasXServer = false;
    facts.compositorServing = "KWin";
    facts.wayToCompositor = "over the session bus";
    facts.hasLayers = facts.sendsKeys = true;
    for (const char* told :
         {"Session: wayland, served by KWin over the session bus\n", "Hot key: Alt+Space, active\n",
          "Panel: above all windows, on a layer of KWin\n", "Synthetic keys: sent through KWin\n"})
        EXPECT_NE(page(facts).find(told), std::string::npos) << page(facts);
    facts.isHotKeyShared = true;
    facts.hotKeyHolder = "KRunner";
    facts.hasLayers = facts.sendsKeys = false;
    for (const char* told :
         {"Alt+Space, not active: KRunner has it\n    -> record another", "Panel: an ordinary window",
          "Synthetic keys: none: KWin takes them from installed programs alone\n    -> install"})
        EXPECT_NE(page(facts).find(told), std::string::npos) << page(facts);
    // In words of its own where the desktop has its own ways.
    facts.hotKeyWay = DesktopFacts::Way{.state = "not active: GNOME has it", .advice = "record another one"};
    facts.ways = {{"Panel", "placed by GNOME", "install the extension"}, {"Synthetic keys", "some"}};
    for (const char* told : {"Hot key: Alt+Space, not active: GNOME has it\n    -> record another one\n",
                             "Panel: placed by GNOME\n    -> install the extension\nSynthetic keys: some\n"})
        EXPECT_NE(page(facts).find(told), std::string::npos) << page(facts);
}

TEST(Diagnosis, SaysWhereTheKeyIsAndWhichWayWorksInTheProgramInFront) {
    using Facts = DesktopFacts;
    const auto place = [](Facts::KeyPlace keyPlace, Facts::Keyring keyring) {
        return [=](Facts& facts) {
            facts.keyPlace = keyPlace;
            facts.keyring = keyring;
        };
    };
    const Facts::Front terminal{.program = "xterm", .way = CaptureWay::primary, .runsCommands = true};
    const Facts::Front secret{.program = "firefox", .hasFocus = true, .hasText = true, .isSecret = true};
    const std::pair<std::function<void(Facts&)>, const char*> cases[] = {
        {place(Facts::KeyPlace::nowhere, Facts::Keyring::absent), "Key: none\n"},
        {place(Facts::KeyPlace::file, Facts::Keyring::absent), "settings file; the desktop has no keyring\n"},
        {place(Facts::KeyPlace::file, Facts::Keyring::locked), "file; the desktop has a keyring for it\n"},
        {place(Facts::KeyPlace::keyring, Facts::Keyring::unlocked), "Key: in the keyring\n"},
        {[](Facts& f) { f.front->takesEdits = false; }, "Write-back: by pasting\n"},
        {[](Facts& f) { f.front->obstacle = CaptureObstacle::nothingSelected; },
         "Capture: through accessibility; nothing is selected now\n"},
        {[&](Facts& f) { f.front = terminal; }, "Capture: through its mouse selection\n"},
        {[&](Facts& f) { f.front = terminal; }, "Write-back: never into a terminal"},
        {[&](Facts& f) { (f.front = terminal)->isCopiedFrom = true; }, "Capture: by a copy"},
        {[&](Facts& f) { f.front = secret; }, "Capture: never"},
        {[&](Facts& f) { f.front = secret; }, "Write-back: never"}};
    for (const auto& [change, line] : cases) {
        DesktopFacts facts = goodDesktop();
        change(facts);
        EXPECT_NE(page(facts).find(line), std::string::npos) << line << page(facts);
    }
}

} // namespace quillmoth
