#include "tests/desktop/support/VirtualDesktop.h"
#include "tests/desktop/support/FailureScreenshots.h"

#include <QImage>
#include <gtest/gtest.h>

namespace quillmoth::test {

TEST(VirtualDesktop, RunsAProgramThatReceivesWhatIsTyped) {
    VirtualDesktop desktop({.accessibility = true});
    keepScreenshotsOnFailure(&desktop);
    const std::string file = desktop.temporaryDirectory() + "/typed";
    ChildProcess terminal({"xterm", "-T", "typing", "-e", "sh", "-c", "read line; echo \"$line\" > " + file});

    ASSERT_TRUE(holdsWithin(std::chrono::seconds(5),
                            [&] {
                                const auto window = desktop.windows().windowTitled("typing");
                                return window && desktop.windows().activeWindow() == *window;
                            }))
        << terminal.output() << (terminal.isRunning() ? "runs" : "has ended");
    desktop.input().type("Hello, 42!\n");
    EXPECT_EQ(terminal.waitForExit(std::chrono::seconds(5)), 0);
    const auto typed = runChild({"cat", file}, std::chrono::seconds(2));
    EXPECT_EQ(typed.output, "Hello, 42!\n");
    keepScreenshotsOnFailure(nullptr);
}

TEST(VirtualDesktop, ChildrenEndAtTheirDeadlineAndTellHowTheyEnded) {
    EXPECT_EQ(runChild({"sh", "-c", "exit 3"}, std::chrono::seconds(2)).exitCode, 3);
    EXPECT_EQ(runChild({"sleep", "30"}, std::chrono::milliseconds(50)).exitCode, std::nullopt);
    EXPECT_EQ(runChild({"cat"}, std::chrono::seconds(2), {.input = "given"}).output, "given");
}

} // namespace quillmoth::test
