// The panel beside windows that are no ordinary text field: terminals, and the program's own.

#include "tests/desktop/windows/WindowsSession.h"

#include <linux/input-event-codes.h>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

using PanelBeside = WindowsSession;

} // namespace

TEST_F(PanelBeside, OverATerminalTheAlternativeMethodInterruptsNothing) {
    writeDefaults({{"useCopyHack", true}});
    start();
    ChildProcess terminal({"xterm", "-T", "front", "-e", "sh", "-c", "printf selected; exec sleep 300"});
    awaitWindow("front");
    const DesktopRectangle place = windows().geometry(windows().activeWindow());
    eventually("a double click selects the word", [&] {
        input().click(place.x + 15, place.y + 8);
        input().clickButton(1);
        return runChild({"xclip", "-o"}, 2s).output.starts_with("selected");
    });
    openPanel();
    awaitText("Context found press esc to remove context");
    closePanelByHotKey();
    EXPECT_EQ(terminal.waitForExit(300ms), std::nullopt);
}

TEST_F(PanelBeside, ThePinnedPanelAndTheProgramsOtherWindowsTakeTurns) {
    const auto openWindow = [](const std::string& argument, const std::string& title) {
        run({argument});
        awaitWindow(title);
        // Beside the place of the panel.
        const auto window = std::to_string(windows().activeWindow());
        runChild({"xdotool", "windowmove", "--sync", window, "10", "480"}, 5s);
    };
    const auto panelHasKeyboard = [] {
        const auto field = shown().find("text", "Command");
        return field && field->isFocused();
    };
    std::string typed;
    const auto losesAndTakesBack = [&](const std::string& what) {
        eventually(what + " takes the keyboard", [&] { return !panelHasKeyboard(); });
        // No hand is quicker.
        letPass(100ms);
        input().click(650 + 150, 40 + 390);
        eventually(what + ": the panel has the keyboard", panelHasKeyboard);
        typed += 'k';
        input().type("k");
        eventually(what + ": what is typed comes to the panel", [&] { return command() == typed; });
    };
    writeDefaults({{"panelFrame savedFrame", "650 40 612 410"}});
    start();
    openWindow("--settings", "Settings");
    openPanel();
    input().chord({KEY_LEFTCTRL, KEY_T});
    for (const auto& [role, name] :
         {std::pair("text", "Name of the model on the server"), std::pair("combo box", "gpt-3.5-turbo"),
          std::pair("text", "Open Quillmoth Hotkey:")}) {
        click(await(role, name));
        losesAndTakesBack(name);
    }
    openWindow("quillmoth://promptEditor", "Prompt Editor");
    losesAndTakesBack("the editor");
}

} // namespace quillmoth::test
