#include "tests/unit/assistant/AssistantFixture.h"

namespace quillmoth {

namespace {

using platform::FakePanelWindows;

class FloatingViewPanelTest : public testing::Test {
protected:
    FakePanelWindows windows;
    FloatingViewPanel panel{windows, false, false, {0, 0, 612, 90}, 2, false};
};

TEST_F(FloatingViewPanelTest, the_window_is_asked_for_what_the_panel_is_to_be) {
    const platform::PanelProperties& properties = windows.lastPanel().properties;
    EXPECT_EQ(properties.styleMask, 32907U);
    EXPECT_EQ(properties.contentRect.width, 612);
    EXPECT_EQ(properties.contentRect.height, 90);
    EXPECT_EQ(properties.level, 3);
    EXPECT_EQ(properties.addedCollectionBehavior, 0x100U);
    EXPECT_EQ(properties.animationBehavior, 4);
    EXPECT_FALSE(properties.releasedWhenClosed);
    EXPECT_TRUE(properties.movableByWindowBackground);
    EXPECT_TRUE(properties.standardButtonsHidden);
}

TEST_F(FloatingViewPanelTest, turning_elsewhere_saves_the_frame_and_closes) {
    panel.isOpen = true;
    windows.resignMain();
    EXPECT_EQ(windows.lastPanel().calls, (Texts{"saveFrameUsingName savedFrame", "close", "close"}));
    EXPECT_FALSE(panel.isOpen);
}

TEST_F(FloatingViewPanelTest, a_pinned_panel_ignores_it_altogether) {
    panel.isOpen = true;
    panel.isOntop = true;
    windows.resignMain();
    EXPECT_TRUE(windows.lastPanel().calls.empty());
    EXPECT_TRUE(panel.isOpen);
}

} // namespace

} // namespace quillmoth
