#include "tests/desktop/support/VirtualDesktop.h"

#include <fstream>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

namespace quillmoth::test {

using namespace std::chrono_literals;

TEST(Diagnose, TellsWhatWorksOnThisDesktopAndNothingThatTheUserWrote) {
    VirtualDesktop desktop({.accessibility = true});
    const std::string path = desktop.homeDirectory() + "/letter.txt";
    std::ofstream(path) << "private words";
    const ChildProcess editor({"mousepad", "--disable-server", path},
                              {.environment = {{"GSETTINGS_BACKEND", "memory"}}});
    ASSERT_TRUE(holdsWithin(10s, [&] { return desktop.windows().windowTitled("letter.txt").has_value(); }));
    desktop.input().chord({KEY_LEFTCTRL, KEY_A});
    desktop.input().chord({KEY_LEFTCTRL, KEY_C});
    ChildResult result;
    EXPECT_TRUE(holdsWithin(20s, [&] {
        result = runChild({QUILLMOTH, "--diagnose"}, 10s);
        return result.output.find("Capture: through accessibility\n") != std::string::npos;
    })) << result.output;
    EXPECT_EQ(result.exitCode, 0);
    for (const char* line :
         {"Window manager: Openbox\n", "Compositor: none", "Hot key: Alt+Space, not active",
          "Openbox has it too", "Accessibility bus: enabled\n", "Program in front: mousepad (gtk)\n",
          "Write-back: through accessibility\n", "Clipboard: works; no clipboard manager\n    -> ",
          "Tray: none\n    -> "})
        EXPECT_NE(result.output.find(line), std::string::npos) << line << "\n" << result.output;
    EXPECT_EQ(result.output.find("private"), std::string::npos) << result.output;
}

} // namespace quillmoth::test
