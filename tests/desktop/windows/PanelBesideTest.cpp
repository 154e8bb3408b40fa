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

} // namespace quillmoth::test
