#include "Quillmoth/Application/AppDelegate.h"

#include "tests/unit/PlatformFixture.h"

namespace quillmoth {
namespace {

constexpr std::uint32_t kSpace = 49;
constexpr std::uint32_t kOption = 0x800;

class AppDelegateTest : public PlatformFixture {
protected:
    AppDelegateTest()
        : center(platform.userDefaults, platform.hotKeyCenter), delegate(platform.platform(), center) {
        platform.workspace.frontmost = 42;
        platform.accessibility.systemWide().fail("AXFocusedUIElement", -25212);
    }

    /// What happens to the panel when the hot key is released.
    Texts pressHotKey() {
        panelCalls().clear();
        platform.hotKeyCenter.press(kSpace, kOption);
        EXPECT_TRUE(panelCalls().empty());
        platform.hotKeyCenter.release(kSpace, kOption);
        return panelCalls();
    }

    Texts& panelCalls() { return platform.panelWindows.lastPanel().calls; }

    Texts openedURLs() { return std::exchange(platform.workspace.openedURLs, {}); }

    KeyboardShortcuts::Center center;
    AppDelegate delegate;
};

TEST_F(AppDelegateTest, the_first_launch_opens_the_onboarding_once) {
    delegate.finishLaunching();
    EXPECT_EQ(openedURLs(), Texts{"quillmoth://onboardingView"});
    EXPECT_FALSE(platform.userDefaults.boolean("firstTime", true));
    EXPECT_EQ(platform.application.calls, Texts{"closeFirstWindow"});
    EXPECT_EQ(panelCalls(), Texts{"setTitle Quillmoth Floating"}) << "made, and not shown";
    AppDelegate second(platform.platform(), center);
    second.finishLaunching();
    EXPECT_EQ(openedURLs(), Texts{});
}

TEST_F(AppDelegateTest, the_menu_leads_where_it_says) {
    delegate.finishLaunching();
    EXPECT_EQ(platform.statusItems.symbol, "wand.and.stars");
    Texts titles;
    for (const platform::MenuItem& item : platform.statusItems.menu)
        titles.push_back(item.title + "/" + item.keyEquivalent);
    EXPECT_EQ(titles, (Texts{"Get Started/1", "Prompt Editor/2", "Settings/3", "/", "Quit/q"}));
    openedURLs();
    platform.application.calls.clear();
    for (const char* title : {"Get Started", "Prompt Editor", "Settings", "Quit"})
        platform.statusItems.choose(title);
    EXPECT_EQ(openedURLs(), (Texts{"quillmoth://onboardingView", "quillmoth://promptEditor"}));
    EXPECT_EQ(platform.application.calls,
              (Texts{"activateIgnoringOtherApps", "showSettingsWindow", "terminate"}));
}

TEST_F(AppDelegateTest, the_hot_key_captures_and_then_opens_or_closes_the_panel) {
    const Texts opening{"center", "setFrameUsingName savedFrame", "orderFront", "makeKeyWindow"};
    platform.accessibility.isTrusted = false;
    delegate.finishLaunching();
    EXPECT_TRUE(logged("Not trusted"));
    DataModel& model = *delegate._coreAppModel;
    model._didFocus = false;
    lines.clear();
    EXPECT_EQ(pressHotKey(), opening) << "without the grant too";
    EXPECT_EQ(lines, (Texts{"Keyboard shortcut was pressed!", "Error: -25212"}));
    EXPECT_FALSE(model._error->empty());
    EXPECT_TRUE(model._didFocus);
    platform.accessibility.calls.clear();
    EXPECT_EQ(pressHotKey(), Texts{"close"}) << "and saves no frame";
    EXPECT_FALSE(platform.accessibility.calls.empty());
    EXPECT_EQ(pressHotKey(), opening);
    model._FloatingViewPanel = nullptr;
    EXPECT_THROW(delegate.toggleFloatingPanel(), FatalFault);
}

TEST_F(AppDelegateTest, a_url_with_a_preset_adds_it_under_a_new_id_and_shows_the_editor) {
    const auto& prompts = delegate._coreAppModel->_PromptM.get()->prompts();
    const std::size_t before = prompts.size();
    delegate.handleOpenURL(
        {"other://x?data=%7B%7D", "quillmoth://promptEditor", "quillmoth://x?data",
         "quillmoth://x?a=1&data=%7B%22id%22%3A%22X%22%2C%22emoji%22%3A%22%22%2C%22name%22%3A"
         "%22N%22%2C%22prompt%22%3A%22P%22%2C%22more%22%3A1%7D&data=2"});
    ASSERT_EQ(prompts.size(), before + 1);
    EXPECT_EQ(prompts.back().name, "N");
    EXPECT_NE(prompts.back().id, "X");
    EXPECT_FALSE(prompts.back().promptType);
    EXPECT_EQ(openedURLs(), Texts{"quillmoth://promptEditor"});
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "RUNNING URL SCHME"), 3);
}

TEST_F(AppDelegateTest, a_link_that_holds_no_preset_is_refused_in_words_and_adds_nothing) {
    const auto before = delegate._coreAppModel->_PromptM.get()->prompts();
    Texts told;
    delegate.handleOpenURL({"quillmoth://x?data=%7B%7D"});
    delegate.onRefusedLink = [&](const std::string& reason) { told.push_back(reason); };
    delegate.handleOpenURL({"quillmoth://x?data=%7B%7D", "quillmoth://x?data=", "quillmoth://x?data=%FF",
                            "quillmoth://x:y?data=%7B%7D"});
    EXPECT_EQ(told.size(), 4U);
    EXPECT_EQ(told.front(), "\"emoji\" is missing");
    EXPECT_EQ(delegate._coreAppModel->_PromptM.get()->prompts(), before);
    EXPECT_TRUE(openedURLs().empty());
}

} // namespace
} // namespace quillmoth
