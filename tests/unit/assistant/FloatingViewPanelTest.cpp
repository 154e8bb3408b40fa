#include "tests/unit/assistant/AssistantFixture.h"

namespace quillmoth {

namespace {

using platform::FakePanelWindows;

class FloatingViewPanelTest : public testing::Test {
protected:
    FakePanelWindows windows;
    FloatingViewPanel panel{windows};
};

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
