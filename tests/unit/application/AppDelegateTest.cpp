#include "Quillmoth/Application/AppDelegate.h"

#include "tests/unit/assistant/AssistantFixture.h"

namespace quillmoth {

namespace {

constexpr std::uint32_t kSpace = 49;
constexpr std::uint32_t kOption = 0x800;

class AppDelegateTest : public testing::Test {
protected:
    AppDelegateTest()
        : fatal_([](const std::string& text) { throw FatalFault(text); }),
          log_([this](std::string line) { lines.push_back(std::move(line)); }),
          center(platform.userDefaults, platform.hotKeyCenter), delegate(platform.platform(), center) {
        platform.workspace.frontmost = 42;
        platform.accessibility.systemWide().fail("AXFocusedUIElement", -25212);
    }

    void pressHotKey() {
        platform.hotKeyCenter.press(kSpace, kOption);
        platform.hotKeyCenter.release(kSpace, kOption);
    }

    Texts& panelCalls() { return platform.panelWindows.lastPanel().calls; }

    platform::FakePlatform platform;
    Texts lines;
    ScopedFatalErrorHandler fatal_;
    ScopedLogCapture log_;
    KeyboardShortcuts::Center center;
    AppDelegate delegate;
};

TEST_F(AppDelegateTest, the_first_launch_opens_the_onboarding_once) {
    delegate.finishLaunching();
    EXPECT_EQ(platform.workspace.openedURLs, Texts{"quillmoth://onboardingView"});
    EXPECT_FALSE(platform.userDefaults.boolean("firstTime", true));
    platform.workspace.openedURLs.clear();
    AppDelegate second(platform.platform(), center);
    second.finishLaunching();
    EXPECT_TRUE(platform.workspace.openedURLs.empty());
    platform.statusItems.choose("Get Started");
    EXPECT_EQ(platform.workspace.openedURLs, Texts{"quillmoth://onboardingView"});
}

TEST_F(AppDelegateTest, the_menu_leads_where_it_says) {
    delegate.finishLaunching();
    EXPECT_EQ(platform.statusItems.symbol, "wand.and.stars");
    Texts titles;
    for (const platform::MenuItem& item : platform.statusItems.menu)
        titles.push_back(item.title + "/" + item.keyEquivalent);
    EXPECT_EQ(titles, (Texts{"Get Started/1", "Prompt Editor/2", "Settings/3", "/", "Quit/q"}));
    platform.workspace.openedURLs.clear();
    platform.statusItems.choose("Prompt Editor");
    EXPECT_EQ(platform.workspace.openedURLs, Texts{"quillmoth://promptEditor"});
    platform.application.calls.clear();
    platform.statusItems.choose("Settings");
    platform.statusItems.choose("Quit");
    EXPECT_EQ(platform.application.calls,
              (Texts{"activateIgnoringOtherApps", "showSettingsWindow", "terminate"}));
}

TEST_F(AppDelegateTest, the_panel_is_made_but_not_shown) {
    delegate.finishLaunching();
    EXPECT_EQ(panelCalls(), Texts{"setTitle Quillmoth Floating"});
}

TEST_F(AppDelegateTest, the_hot_key_acts_on_its_release_and_captures_first) {
    delegate.finishLaunching();
    panelCalls().clear();
    platform.hotKeyCenter.press(kSpace, kOption);
    EXPECT_TRUE(panelCalls().empty());
    delegate._coreAppModel->_didFocus = false;
    lines.clear();
    platform.hotKeyCenter.release(kSpace, kOption);
    EXPECT_EQ(lines, (Texts{"Keyboard shortcut was pressed!", "Error: -25212"}));
    EXPECT_EQ(panelCalls(), (Texts{"center", "setFrameUsingName savedFrame", "orderFront", "makeKeyWindow"}));
    EXPECT_TRUE(delegate._coreAppModel->_didFocus);
}

TEST_F(AppDelegateTest, the_second_press_captures_and_closes_without_saving_the_frame) {
    delegate.finishLaunching();
    pressHotKey();
    panelCalls().clear();
    platform.accessibility.calls.clear();
    pressHotKey();
    EXPECT_EQ(panelCalls(), Texts{"close"});
    EXPECT_FALSE(platform.accessibility.calls.empty());
    panelCalls().clear();
    pressHotKey();
    EXPECT_EQ(panelCalls().front(), "center");
}

TEST_F(AppDelegateTest, without_the_grant_the_start_goes_on) {
    platform.accessibility.isTrusted = false;
    delegate.finishLaunching();
    EXPECT_NE(std::find(lines.begin(), lines.end(), "Not trusted"), lines.end());
    pressHotKey();
    EXPECT_FALSE(delegate._coreAppModel->_error->empty());
    EXPECT_TRUE(platform.panelWindows.lastPanel().isVisible);
}

TEST_F(AppDelegateTest, a_url_with_a_preset_adds_it_under_a_new_id_and_shows_the_editor) {
    const std::size_t before = delegate._coreAppModel->_PromptM.get()->prompts().size();
    delegate.handleOpenURL(
        {"other://x?data=%7B%7D", "quillmoth://promptEditor", "quillmoth://x?data",
         "quillmoth://x?a=1&data=%7B%22id%22%3A%22X%22%2C%22emoji%22%3A%22%22%2C%22name%22%3A"
         "%22N%22%2C%22prompt%22%3A%22P%22%2C%22more%22%3A1%7D&data=2"});
    const auto& prompts = delegate._coreAppModel->_PromptM.get()->prompts();
    ASSERT_EQ(prompts.size(), before + 1);
    EXPECT_EQ(prompts.back().name, "N");
    EXPECT_NE(prompts.back().id, "X");
    EXPECT_FALSE(prompts.back().promptType);
    EXPECT_EQ(platform.workspace.openedURLs, Texts{"quillmoth://promptEditor"});
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
    EXPECT_TRUE(platform.workspace.openedURLs.empty());
}

} // namespace

} // namespace quillmoth
