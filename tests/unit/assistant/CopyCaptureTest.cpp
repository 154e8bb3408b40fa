#include "tests/unit/assistant/AssistantFixture.h"

namespace quillmoth {

namespace {

class CopyCaptureTest : public AssistantFixture {
protected:
    CopyCaptureTest() { platform.userDefaults.set("useCopyHack", true); }

    /// The other application answers the copy with `text`.
    void answerCopy(const std::optional<std::string>& text) {
        platform.keyboardEvents.onPost = [this, text](const platform::CGKeyboardEvent& event) {
            if (!event.keyDown && text)
                platform.pasteboard.contents = text;
        };
    }
};

TEST_F(CopyCaptureTest, the_copied_text_is_read_a_fixed_time_later_and_the_clipboard_comes_back) {
    platform.pasteboard.contents = "saved";
    answerCopy("fresh");
    model->captureContext();
    EXPECT_TRUE(platform.accessibility.calls.empty());
    ASSERT_EQ(platform.keyboardEvents.posts.size(), 2U);
    EXPECT_TRUE(platform.keyboardEvents.posts[0].event.keyDown);
    EXPECT_FALSE(platform.keyboardEvents.posts[1].event.keyDown);
    for (const auto& post : platform.keyboardEvents.posts) {
        EXPECT_EQ(post.event.keyCode, 8);
        EXPECT_EQ(post.event.flags, 0x100000U);
        EXPECT_EQ(post.tap, 0U);
    }
    EXPECT_EQ(platform.keyboardEvents.sourceStates, std::vector<std::uint32_t>{1});
    platform.mainQueue.advance(0.19);
    EXPECT_FALSE(model->_isContext);
    const Texts names = assignments([&] { platform.mainQueue.advance(0.02); });
    EXPECT_EQ(*model->_selectedValue, "fresh");
    EXPECT_TRUE(model->_isContext);
    EXPECT_EQ(*model->_status, "Context found press esc to remove context");
    EXPECT_EQ(names.front(), "_selectedValue");
    EXPECT_EQ(names.back(), "_status");
    EXPECT_EQ(platform.pasteboard.contents, "saved");
    EXPECT_EQ(platform.pasteboard.calls, (Texts{"clearContents", "clearContents", "setString saved"}));
}

TEST_F(CopyCaptureTest, no_answer_is_no_selection) {
    platform.pasteboard.contents = "saved";
    model->_isContext = true;
    model->_selectedValue = std::string("old");
    model->captureContext();
    platform.mainQueue.advance(0.2);
    EXPECT_EQ(*model->_status, "No selection");
    EXPECT_EQ(*model->_selectedValue, "");
    EXPECT_FALSE(model->_isContext);
    EXPECT_EQ(platform.pasteboard.contents, "saved");
}

TEST_F(CopyCaptureTest, a_selection_equal_to_the_clipboard_changes_nothing) {
    platform.pasteboard.contents = "e\xCC\x81";
    answerCopy("\xC3\xA9");
    model->_selectedValue = std::string("old");
    model->captureContext();
    platform.mainQueue.advance(0.2);
    EXPECT_EQ(*model->_status, "");
    EXPECT_EQ(*model->_selectedValue, "old");
    EXPECT_EQ(platform.pasteboard.contents, "\xC3\xA9");
}

TEST_F(CopyCaptureTest, a_clipboard_without_text_comes_back_with_an_empty_one) {
    platform.pasteboard.contents.reset();
    answerCopy("fresh");
    model->captureContext();
    platform.mainQueue.advance(0.2);
    EXPECT_EQ(platform.pasteboard.contents, "");
}

TEST_F(CopyCaptureTest, over_a_terminal_its_selection_is_taken_at_once_and_nothing_is_copied) {
    platform.pasteboard.contents = "saved";
    for (const std::string selected : {"saved", ""}) {
        platform.workspace.terminalSelection = selected;
        model->captureContext();
        EXPECT_EQ(*model->_selectedValue, selected);
        EXPECT_EQ(model->_isContext, !selected.empty());
        EXPECT_EQ(*model->_status,
                  selected.empty() ? "No selection" : "Context found press esc to remove context");
    }
    platform.mainQueue.advance(1);
    EXPECT_TRUE(platform.keyboardEvents.posts.empty());
    EXPECT_TRUE(platform.pasteboard.calls.empty());
}

TEST_F(CopyCaptureTest, events_that_cannot_be_made_are_a_fatal_fault) {
    platform.keyboardEvents.failsToMakeEvents = true;
    EXPECT_THROW(model->captureContext(), FatalFault);
}

} // namespace

} // namespace quillmoth
