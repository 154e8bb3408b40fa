#include "tests/unit/assistant/AssistantFixture.h"

#include "Quillmoth/Assistant/CaptureTexts.h"

namespace quillmoth {

namespace {

class NoticesTest : public AssistantFixture {
protected:
    [[nodiscard]] bool tells(const std::string& text) const {
        return model->_error->find(text) != std::string::npos;
    }
};

TEST_F(NoticesTest, files_that_cannot_be_used_are_told_until_a_prompt_is_run) {
    platform.documents.put(PromptModel::kFilename, "[]");
    platform.documents.put(DataModel::kHistoryFilename, "[{");
    model = DataModel::create(platform.platform());
    EXPECT_FALSE(model->_PromptM.get()->prompts().empty());
    const std::string presets = platform::FakeDocuments::pathOf("QuillmothPrompts.json.damaged-1");
    const std::string history = platform::FakeDocuments::pathOf("QuillmothHistory.json.damaged-1");
    EXPECT_TRUE(tells(presets) && tells(history)) << *model->_error;
    platform.accessibility.isTrusted = false;
    platform.accessibility.systemWide().fail("AXFocusedUIElement", -25212);
    model->captureContext();
    EXPECT_TRUE(tells(kPermissionMessage) && tells(presets)) << *model->_error;
    model->runPrompt();
    model->captureContext();
    EXPECT_EQ(*model->_error, kPermissionMessage);
}

TEST_F(NoticesTest, keys_that_cannot_be_sent_are_told_and_leave_the_clipboard_alone) {
    platform.userDefaults.set("useCopyHack", true);
    platform.keyboardEvents.failsToMakeEvents = true;
    platform.pasteboard.contents = "kept";
    model->captureContext();
    platform.mainQueue.advance(1);
    EXPECT_EQ(*model->_error, kNoCopyMessage);
    EXPECT_TRUE(platform.pasteboard.calls.empty());
}

} // namespace

} // namespace quillmoth
