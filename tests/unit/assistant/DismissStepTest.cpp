#include "tests/unit/assistant/AssistantFixture.h"

namespace quillmoth {

namespace {

class DismissStepTest : public AssistantFixture {};

TEST_F(DismissStepTest, the_ladder_is_walked_from_the_top_one_rung_a_press) {
    converse("one", "1");
    hold("context");
    model->_isOnTopBinding = true;
    model->_command = std::string("typed");
    model->_nonContextPrompt = true;
    model->_filteredData = Rows();

    model->dismissStep();
    EXPECT_FALSE(model->_nonContextPrompt);
    EXPECT_EQ(*model->_filteredData, (Rows{0, 1}));
    model->dismissStep();
    EXPECT_EQ(shown(), "1||");
    EXPECT_EQ(summaryCount(), 0U);
    model->_filteredData = Rows();
    model->dismissStep();
    EXPECT_EQ(shown(), "||");
    EXPECT_TRUE(model->_messages->empty());
    EXPECT_EQ(summaryCount(), 1U);
    EXPECT_TRUE(model->_isContext) << "the context survives the answer";
    EXPECT_TRUE(model->_filteredData->empty());
    platform.mainQueue.runUntilIdle();
    EXPECT_EQ(*model->_filteredData, (Rows{0, 1})) << "the list comes back a turn later";
    model->dismissStep();
    EXPECT_EQ(*model->_selectedValue, "");
    EXPECT_EQ(*model->_status, "Context removed");
    EXPECT_FALSE(model->_isContext);
    EXPECT_EQ(*model->_filteredData, (Rows{2, 3}));
    model->_selectedValue = std::string("left over");
    model->_status = std::string();
    model->dismissStep();
    EXPECT_EQ(*model->_status, "Context removed") << "a text without context is removed all the same";
    model->dismissStep();
    EXPECT_FALSE(model->_isOnTopBinding);
    EXPECT_TRUE(panelCalls().empty());
    model->dismissStep();
    EXPECT_EQ(panelCalls(), kResign);
    model->_FloatingViewPanel = nullptr;
    EXPECT_THROW(model->dismissStep(), FatalFault);
}

TEST_F(DismissStepTest, a_stored_conversation_is_closed_with_its_place) {
    model->storeConversation("T", {{.id = "1", .role = "assistant", .content = "hi"}}, -1);
    openStored(0);
    model->_openHistory = true;
    model->_command = std::string("typed");
    EXPECT_EQ(assignments([&] { model->dismissStep(); }), Texts{"_command"});
    EXPECT_EQ(assignments([&] { model->dismissStep(); }),
              (Texts{"_browseHistory", "_openHistory", "_responseValue", "_chatWithHistory", "_messages"} +
               kRefresh + kClamp));
    EXPECT_EQ(summaryCount(), 1U);
    EXPECT_EQ(model->_chatWithHistory, -1);
    EXPECT_FALSE(model->_browseHistory || model->_openHistory);
    EXPECT_EQ(shown(), "||");
}

} // namespace

} // namespace quillmoth
