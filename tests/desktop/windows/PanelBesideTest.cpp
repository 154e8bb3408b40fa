// The panel beside windows that are no ordinary text field: terminals, and the program's own.

#include "tests/desktop/windows/ProgramDesktop.h"

#include <linux/input-event-codes.h>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

class PanelBeside : public ProgramDesktop {
protected:
    void openPanel() {
        input().chord({KEY_LEFTALT, KEY_SPACE});
        eventually("the hot key opens the panel", [] { return isPanelVisible(); });
        eventually("it has the keyboard", [this] { return panelHasKeyboard(); });
    }

    static void closePanelByHotKey() {
        input().chord({KEY_LEFTALT, KEY_SPACE});
        eventually("the hot key closes the panel", [] { return !isPanelVisible(); });
    }

    bool panelHasKeyboard() {
        const auto field = AccessibleElement::find(process(), "text", "Command");
        return field && field->isFocused();
    }

    std::string command() { return control("text", "Command").text(); }

    /// Opens one of the program's windows beside the place of the panel.
    void openWindow(const std::string& argument, const std::string& title) {
        run({argument});
        awaitWindow(title);
        const auto window = std::to_string(desktop().windows().activeWindow());
        runChild({"xdotool", "windowmove", "--sync", window, "10", "480"}, 5s);
    }

    static void clickPanel() { input().click(kPanelX + 150, kPanelY + 390); }

    static constexpr int kPanelX = 650;
    static constexpr int kPanelY = 40;
};

} // namespace

TEST_F(PanelBeside, OverATerminalTheAlternativeMethodInterruptsNothing) {
    writeDefaults({{"useCopyHack", true}});
    start();
    ChildProcess terminal({"xterm", "-T", "front", "-e", "sh", "-c", "printf selected; exec sleep 300"});
    awaitWindow("front");
    const DesktopRectangle place = desktop().windows().geometry(desktop().windows().activeWindow());
    eventually("a double click selects the word", [&] {
        input().click(place.x + 15, place.y + 8);
        input().click(place.x + 15, place.y + 8);
        return runChild({"xclip", "-o"}, 2s).output.starts_with("selected");
    });
    openPanel();
    eventually("it is the context", [this] { return shows("Context found press esc to remove context"); });
    closePanelByHotKey();
    EXPECT_EQ(terminal.waitForExit(300ms), std::nullopt);
}

TEST_F(PanelBeside, ThePinnedPanelAndTheProgramsOtherWindowsTakeTurns) {
    writeDefaults({{"panelFrame savedFrame", "650 40 612 410"}});
    start();
    openWindow("--settings", "Settings");
    openPanel();
    input().chord({KEY_LEFTCTRL, KEY_T});
    std::string typed;
    const auto takesBack = [&](const std::string& what) {
        clickPanel();
        EXPECT_TRUE(eventually(what + ": the panel has the keyboard", [this] { return panelHasKeyboard(); }));
        typed += 'k';
        input().type("k");
        EXPECT_TRUE(eventually(what + ": what is typed comes to it", [&] { return command() == typed; }))
            << command();
    };
    for (const auto& [role, name] :
         {std::pair("text", "Name of the model on the server"), std::pair("combo box", "gpt-3.5-turbo"),
          std::pair("text", "Open Quillmoth Hotkey:")}) {
        clickOn(control(role, name));
        eventually(std::string(name) + " takes the keyboard", [this] { return !panelHasKeyboard(); });
        takesBack(name);
    }
    openWindow("quillmoth://promptEditor", "Prompt Editor");
    eventually("the editor takes the keyboard", [this] { return !panelHasKeyboard(); });
    takesBack("the editor");
}

} // namespace quillmoth::test
