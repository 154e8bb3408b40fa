#include "tests/unit/assistant/AssistantFixture.h"

namespace quillmoth {

namespace {

class ListsTest : public AssistantFixture {};

TEST_F(ListsTest, a_preset_is_listed_by_its_class) {
    model->refreshContextList();
    EXPECT_EQ(*model->_filteredData, (Rows{0, 1}));
    model->refreshNonContextList();
    EXPECT_EQ(*model->_filteredData, (Rows{2, 3}));
    model->_isContext = true;
    model->refreshList();
    EXPECT_EQ(*model->_filteredData, (Rows{0, 1}));
}

TEST_F(ListsTest, a_search_finds_names_of_the_class_in_force_whatever_their_case) {
    makeModel({preset("STRASSE", "", "nonContext"), preset("Straße", "", "nonContext"),
               preset("strasse", "", "context"), preset("Other", "straße", "nonContext"),
               preset("x STRAßE y", "", "nonContext"), preset("Straße", "", "other")});
    model->filterPrompts("trass");
    EXPECT_EQ(*model->_filteredData, (Rows{0, 1, 4}));
    model->_isContext = true;
    model->filterPrompts("ß");
    EXPECT_EQ(*model->_filteredData, (Rows{2}));
    model->filterPrompts("nothing like it");
    EXPECT_TRUE(model->_filteredData->empty());
    model->_PromptM.get()->append({preset("Nothing like it", "")});
    model->filterPrompts("nothing like it");
    EXPECT_EQ(*model->_filteredData, (Rows{6}));
}

TEST_F(ListsTest, every_list_change_selects_the_typed_command) {
    model->_selectedIndex = 3;
    model->_hoverIndex = 3;
    EXPECT_EQ(assignments([&] { model->clampSelection(); }), kClamp);
    EXPECT_EQ(model->_selectedIndex, -1);
    EXPECT_EQ(model->_hoverIndex, -1);
    EXPECT_EQ(assignments([&] { model->filterPrompts("x"); }), kClamp + kRefresh);
}

TEST_F(ListsTest, the_arrows_walk_the_rows_and_stop_at_both_ends) {
    Rows walk;
    for (int i = 0; i < 3; ++i) {
        model->selectNext();
        walk.push_back(model->_selectedIndex);
    }
    for (int i = 0; i < 3; ++i) {
        model->selectPrevious();
        walk.push_back(model->_selectedIndex);
    }
    EXPECT_EQ(walk, (Rows{2, 3, 3, 2, -1, -1}));
    model->filterPrompts("zzz");
    model->selectNext();
    model->selectPrevious();
    EXPECT_EQ(model->_selectedIndex, -1);
}

TEST_F(ListsTest, with_the_history_open_the_arrows_move_both_selections) {
    store({"A", "B"});
    model->_keyHistorySelected = 1;
    model->selectPrevious();
    EXPECT_EQ(model->_keyHistorySelected, 1);
    model->_keyHistorySelected = 0;
    model->selectNext();
    EXPECT_EQ(model->_keyHistorySelected, 0);
    model->clampSelection();
    model->_openHistory = true;
    for (int i = 0; i < 3; ++i)
        model->selectNext();
    EXPECT_EQ(model->_keyHistorySelected, 1);
    EXPECT_EQ(model->_selectedIndex, 3);
    for (int i = 0; i < 3; ++i)
        model->selectPrevious();
    EXPECT_EQ(model->_keyHistorySelected, 0);
    EXPECT_EQ(model->_selectedIndex, -1);
}

TEST_F(ListsTest, no_preset_at_all_is_a_fatal_fault_for_a_list_and_none_for_a_search) {
    model->_PromptM.get()->setPrompts({});
    EXPECT_THROW(model->refreshList(), FatalFault);
    EXPECT_NO_THROW(model->filterPrompts("x"));
    model->_filteredData = Rows{2, 4};
    model->_selectedIndex = 3;
    EXPECT_THROW(model->selectPrevious(), FatalFault);
}

} // namespace

} // namespace quillmoth
