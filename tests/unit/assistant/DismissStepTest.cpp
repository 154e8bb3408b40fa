#include "tests/unit/assistant/AssistantFixture.h"

namespace quillmoth {

namespace {

using Rows = std::vector<std::int64_t>;

class DismissStepTest : public AssistantFixture {
protected:
    std::size_t summaryCount() const { return platform.urlSessions.shared().tasks().size(); }
};

TEST_F(DismissStepTest, the_ladder_is_walked_from_the_top_one_rung_a_press) {
    converse("one", {"1"});
    model->_selectedValue = std::string("context");
    model->_isContext = true;
    model->_isOnTopBinding = true;
    model->_command = std::string("typed");
    model->_nonContextPrompt = true;
    model->_filteredData = Rows();

    model->dismissStep();
    EXPECT_FALSE(model->_nonContextPrompt);
    EXPECT_EQ(*model->_filteredData, (Rows{0, 1}));
    model->dismissStep();
    EXPECT_EQ(*model->_command, "");
    EXPECT_EQ(summaryCount(), 0U);
    model->dismissStep();
    EXPECT_EQ(*model->_responseValue, "");
    EXPECT_TRUE(model->_messages->empty());
    EXPECT_EQ(summaryCount(), 1U);
    EXPECT_TRUE(model->_isContext) << "the context survives the answer";
    model->dismissStep();
    EXPECT_EQ(*model->_selectedValue, "");
    EXPECT_EQ(*model->_status, "Context removed");
    EXPECT_FALSE(model->_isContext);
    EXPECT_EQ(*model->_filteredData, (Rows{2, 3}));
    model->dismissStep();
    EXPECT_FALSE(model->_isOnTopBinding);
    EXPECT_TRUE(platform.panelWindows.lastPanel().calls.empty());
    model->dismissStep();
    EXPECT_EQ(platform.panelWindows.lastPanel().calls,
              (Texts{"saveFrameUsingName savedFrame", "close", "close"}));
}

TEST_F(DismissStepTest, the_list_comes_back_a_turn_after_a_new_conversation_is_closed) {
    converse("one", {"1"});
    model->_filteredData = Rows();
    model->dismissStep();
    EXPECT_TRUE(model->_filteredData->empty());
    platform.mainQueue.runUntilIdle();
    EXPECT_FALSE(model->_filteredData->empty());
}

TEST_F(DismissStepTest, a_stored_conversation_is_closed_with_its_place) {
    model->storeConversation("T", {{.id = "1", .role = "assistant", .content = "hi"}}, -1);
    model->_openHistory = true;
    model->runPrompt();
    const Texts names = assignments([&] { model->dismissStep(); });
    EXPECT_EQ(summaryCount(), 1U);
    EXPECT_EQ(names, (Texts{"_browseHistory", "_openHistory", "_responseValue", "_chatWithHistory",
                            "_messages", "_filteredData", "_filteredData", "_selectedIndex", "_selectedIndex",
                            "_hoverIndex", "_selectedIndex", "_selectedIndex", "_hoverIndex"}));
    EXPECT_EQ(model->_chatWithHistory, -1);
    EXPECT_EQ(*model->_responseValue, "");
}

TEST_F(DismissStepTest, a_text_without_context_is_removed_all_the_same) {
    model->_selectedValue = std::string("left over");
    model->dismissStep();
    EXPECT_EQ(*model->_status, "Context removed");
}

TEST_F(DismissStepTest, no_panel_to_close_is_a_fatal_fault) {
    model->_FloatingViewPanel = nullptr;
    EXPECT_THROW(model->dismissStep(), FatalFault);
}

} // namespace

} // namespace quillmoth
