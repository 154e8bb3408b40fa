// What happens to a session of sway while the panel is open.

#include "tests/desktop/wayland/SwayProgram.h"

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

constexpr const char* kTyped = "half a question";

class SwayChanges : public SwayProgram {
protected:
    static void openWithText() {
        openPanel();
        input().type(kTyped);
        ASSERT_TRUE(soon([] { return command() == kTyped; })) << command();
    }

    /// The keys are the editor's, and what was typed is there when the panel opens again.
    void expectGivenBackAndKept() {
        input().type("q");
        EXPECT_TRUE(soon([this] { return text().find('q') != std::string::npos; })) << text();
        openPanel();
        EXPECT_EQ(command(), kTyped);
        clearField();
    }

    static void clearField() {
        input().chord({KEY_LEFTCTRL, KEY_A});
        input().tapKey(KEY_BACKSPACE);
    }
};

} // namespace

TEST_F(SwayChanges, ThePanelComesUpOnTheOutputWithTheFocusInItsScale) {
    sway_->command("create_output");
    sway_->command("output HEADLESS-2 mode 1600x1200 position 1280 0 scale 2");
    sway_->useExtent(SwaySession::kWidth + 800, SwaySession::kHeight);
    sway_->command("focus output HEADLESS-2");
    openWithText();
    const DesktopRectangle second = place();
    EXPECT_GE(second.x, SwaySession::kWidth);
    EXPECT_LE(second.x + second.width, SwaySession::kWidth + 800);
    SwaySession::saveScreenshot("sway-scale-2.png", "HEADLESS-2");
    // The output itself can be pressed on.
    input().click(SwaySession::kWidth + 10, 10);
    EXPECT_TRUE(soon([] { return !isOpen(); }));
    sway_->command("focus output HEADLESS-1");
    openPanel();
    EXPECT_TRUE(soon([] {
        return place().x >= SwaySession::kWidth + 800 || place().x < SwaySession::kWidth;
    })) << place().x;
    EXPECT_EQ(command(), kTyped);
    clearField();
    sway_->useExtent(SwaySession::kWidth, SwaySession::kHeight);
}

TEST_F(SwayChanges, AConfigurationThatIsReadAgainLeavesThePanelItsKeysAndItsText) {
    openWithText();
    sway_->configure("# again");
    letPass(300ms);
    EXPECT_TRUE(hasKeyboard());
    EXPECT_EQ(command(), kTyped);
    input().chord({KEY_LEFTALT, KEY_SPACE});
    ASSERT_TRUE(soon([] { return !isOpen(); }));
    expectGivenBackAndKept();
}

TEST_F(SwayChanges, AScreenLockerTakesTheKeysAndTheTextIsThereAfterwards) {
    openWithText();
    {
        const ChildProcess locker({"swaylock", "--color", "000000"});
        EXPECT_TRUE(soon([] { return !hasKeyboard(); }));
        // Nothing of it goes to the panel.
        input().type("secret");
        letPass(200ms);
    }
    EXPECT_TRUE(soon([] { return !isOpen(); }));
    expectGivenBackAndKept();
    EXPECT_EQ(text().find("secret"), std::string::npos);
}

} // namespace quillmoth::test
