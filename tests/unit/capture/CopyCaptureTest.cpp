#include "Quillmoth/Capture/CopyCapture.h"

#include "tests/unit/capture/CaptureFixture.h"

namespace quillmoth {

namespace {

class CopyCaptureTest : public CaptureFixture {
protected:
    CopyCapture capture{platform.workspace, platform.pasteboard, platform.keyboardEvents};
};

TEST_F(CopyCaptureTest, the_keys_of_a_copy_are_pressed_over_an_empty_clipboard) {
    platform.pasteboard.contents = "saved";
    platform.keyboardEvents.onPost = [this](const platform::CGKeyboardEvent&) {
        EXPECT_FALSE(platform.pasteboard.contents);
    };
    EXPECT_EQ(capture.start(), "saved");
    ASSERT_EQ(platform.keyboardEvents.posts.size(), 2U);
    EXPECT_TRUE(platform.keyboardEvents.posts[0].keyDown);
    EXPECT_FALSE(platform.keyboardEvents.posts[1].keyDown);
    for (const auto& post : platform.keyboardEvents.posts) {
        EXPECT_EQ(post.keyCode, 8);
        EXPECT_EQ(post.flags, 0x100000U);
    }
    platform.pasteboard.contents.reset();
    EXPECT_EQ(capture.start(), std::nullopt);
}

TEST_F(CopyCaptureTest, what_the_clipboard_holds_now_is_the_selection_unless_it_held_it_before) {
    struct Case {
        std::optional<std::string> saved;
        std::optional<std::string> fresh;
        CaptureResult result;
    };

    const CaptureResult none{.way = CaptureWay::copy, .obstacle = CaptureObstacle::nothingSelected};
    const CaptureResult same{.way = CaptureWay::copy, .obstacle = CaptureObstacle::sameAsClipboard};
    const Case cases[] = {
        {"saved", "fresh", {.way = CaptureWay::copy, .text = "fresh"}},
        {std::nullopt, "fresh", {.way = CaptureWay::copy, .text = "fresh"}},
        {"saved", std::nullopt, none},
        {std::nullopt, std::nullopt, none},
        {"e\xCC\x81", "\xC3\xA9", same},
        {"", std::nullopt, same},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.fresh.value_or("none"));
        platform.pasteboard.contents = each.fresh;
        EXPECT_EQ(capture.finish(each.saved), each.result);
        EXPECT_TRUE(platform.pasteboard.calls.empty());
    }
}

TEST_F(CopyCaptureTest, the_clipboard_comes_back_with_an_empty_text_where_it_had_none) {
    capture.restore("saved");
    capture.restore(std::nullopt);
    EXPECT_EQ(platform.pasteboard.calls,
              (Texts{"clearContents", "setString saved", "clearContents", "setString "}));
}

TEST_F(CopyCaptureTest, a_terminal_in_front_is_asked_for_its_selection) {
    EXPECT_FALSE(capture.terminalSelection());
    platform.workspace.terminalSelection = "ls";
    EXPECT_EQ(capture.terminalSelection(), (CaptureResult{.way = CaptureWay::primary, .text = "ls"}));
    platform.workspace.terminalSelection = "";
    EXPECT_EQ(capture.terminalSelection()->obstacle, CaptureObstacle::nothingSelected);
}

TEST_F(CopyCaptureTest, events_that_cannot_be_made_are_a_fatal_fault) {
    platform.keyboardEvents.failsToMakeEvents = true;
    EXPECT_THROW(static_cast<void>(capture.start()), std::runtime_error);
}

} // namespace

} // namespace quillmoth
