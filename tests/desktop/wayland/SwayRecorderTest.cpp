// The recorder of the hot key in a session of sway.

#include "tests/desktop/wayland/SwayProgram.h"

namespace quillmoth::test {

namespace {

constexpr const char* kTaken = "since your desktop uses it already";
constexpr const char* kPressShortcut = "Press shortcut…";

class SwayRecorder : public SwayProgram {
protected:
    void SetUp() override {
        SwayProgram::SetUp();
        session().run({"--settings"});
        ASSERT_TRUE(soon([] { return sway_->front() == "org.quillmoth.Quillmoth" && described() != ""; }));
        ASSERT_TRUE(soon([] {
            const AccessibleElement recorder = *session().shown().find("text", kName);
            const DesktopRectangle window = sway_->frontRectangle();
            const DesktopRectangle place = recorder.bounds();
            input().click(window.x + place.x + place.width / 2, window.y + place.y + place.height / 2);
            return holdsWithin(std::chrono::seconds(1), [] { return described() == kPressShortcut; });
        })) << described();
    }

    static std::string described() {
        const auto recorder = session().shown().find("text", kName);
        return recorder ? recorder->description() : "";
    }

    static constexpr const char* kName = "Open Quillmoth Hotkey:";
};

} // namespace

TEST_F(SwayRecorder, WhatTheConfigurationHasBoundIsHeardNamedAsTakenAndBoundAgainAfterwards) {
    sway_->configure("bindsym Mod4+k mark pressed");
    input().chord({KEY_LEFTMETA, KEY_K});
    EXPECT_TRUE(soon([] { return session().shown().shows(kTaken); }));
    EXPECT_EQ(sway_->marks(), "");
    input().tapKey(KEY_ENTER);
    // Another one can be pressed at once.
    EXPECT_TRUE(soon([] { return described() == kPressShortcut; })) << described();
    input().tapKey(KEY_ESC);
    EXPECT_TRUE(soon([] { return described() == "Alt+Space"; })) << described();
    input().chord({KEY_LEFTMETA, KEY_K});
    EXPECT_TRUE(soon([] { return sway_->marks() == "pressed"; })) << "given back with the recording";
    sway_->configure("unbindsym Mod4+k");
}

TEST_F(SwayRecorder, ACombinationThatSwayTakesIsRecordedAndOpensThePanelAtOnce) {
    // Made as the session runs, so that no configuration tells of it.
    sway_->command("bindsym Mod4+j mark pressed");
    input().chord({KEY_LEFTMETA, KEY_J});
    EXPECT_TRUE(soon([] { return described() == "Super+J"; })) << described();
    SwaySession::saveScreenshot("sway-recorder.png");
    input().chord({KEY_LEFTMETA, KEY_J});
    EXPECT_TRUE(soon(hasKeyboard));
    EXPECT_EQ(sway_->marks(), "");
    input().chord({KEY_LEFTMETA, KEY_J});
    EXPECT_TRUE(soon([] { return !isOpen(); }));
    sway_->command("unbindsym Mod4+j");
}

TEST_F(SwayRecorder, TheKeysAreGivenBackWhenTheWindowLosesTheFocusOrCloses) {
    sway_->command("bindsym Mod4+u mark --add pressed");
    sway_->command("focus left");
    ASSERT_TRUE(soon([] { return described() != kPressShortcut; }));
    input().chord({KEY_LEFTMETA, KEY_U});
    EXPECT_TRUE(soon([] { return sway_->marks() == "pressed"; }));
    sway_->command("unmark pressed; focus right");
    sway_->command("kill");
    ASSERT_TRUE(soon([] { return sway_->front() != "org.quillmoth.Quillmoth"; }));
    input().chord({KEY_LEFTMETA, KEY_U});
    EXPECT_TRUE(soon([] { return sway_->marks() == "pressed"; }));
    sway_->command("unbindsym Mod4+u; unmark pressed");
}

} // namespace quillmoth::test
