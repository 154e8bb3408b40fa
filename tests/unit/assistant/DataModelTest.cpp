#include "Foundation/Text.h"
#include "Quillmoth/Assistant/CaptureTexts.h"
#include "Quillmoth/Assistant/PresetFilter.h"
#include "tests/unit/assistant/AssistantFixture.h"

#include <random>

namespace quillmoth {
namespace {

class ModelMakingTest : public AssistantFixture {
protected:
    void remake() { model = DataModel::create(platform.platform()); }
};

TEST_F(ModelMakingTest, a_first_start_takes_the_shipped_presets_and_writes_their_file) {
    platform.documents.files.clear();
    platform.documents.directories.clear();
    remake();
    EXPECT_TRUE(model->_oldMessages->empty());
    EXPECT_EQ(*model->_error, "") << "missing files are no fault";
    EXPECT_FALSE(model->_PromptM.get()->prompts().empty());
    EXPECT_EQ(platform.documents.content(PromptModel::kFilename),
              *writeJSON(model->_PromptM.get()->prompts()));
    EXPECT_TRUE(platform.documents.content(DataModel::kHistoryFilename).empty());
}

TEST_F(ModelMakingTest, the_first_row_is_selected_and_the_field_asks_for_the_focus) {
    remake();
    EXPECT_EQ((Rows{model->_selectedIndex, model->_hoverIndex, model->_keyHistorySelected,
                    model->_keyHistoryHover, model->_chatWithHistory}),
              (Rows{0, -1, 0, -1, -1}));
    EXPECT_TRUE(model->_didFocus);
    EXPECT_TRUE(model->_filteredData->empty());
    EXPECT_EQ(model->_extractedTexts->size(), 7U);
}

TEST_F(ModelMakingTest, files_that_cannot_be_used_are_told_until_a_prompt_is_run) {
    const auto tells = [this](const std::string& text) {
        return model->_error->find(text) != std::string::npos;
    };
    platform.documents.put(PromptModel::kFilename, "[]");
    platform.documents.put(DataModel::kHistoryFilename, "[{");
    remake();
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

TEST_F(ModelMakingTest, an_assignment_of_the_same_value_is_told_before_it_lands) {
    std::string seen = "not told";
    const Subscription subscription =
        model->objectWillChange([&](std::string_view name) { seen = std::string(name) + *model->_command; });
    model->_command = std::string("x");
    EXPECT_EQ(seen, "_command");
    model->_command = std::string("x");
    EXPECT_EQ(seen, "_commandx");
}

class ListsTest : public AssistantFixture {};

TEST_F(ListsTest, lists_and_searches_give_the_class_in_force_whatever_the_case_of_a_name) {
    makeModel({preset("STRASSE", "", "nonContext"), preset("Straße", "", "nonContext"),
               preset("strasse", "", "context"), preset("Other", "straße", "nonContext"),
               preset("x STRAßE y", "", "nonContext"), preset("Straße", "", "other")});
    model->refreshList();
    EXPECT_EQ(*model->_filteredData, (Rows{0, 1, 3, 4}));
    model->refreshContextList();
    EXPECT_EQ(*model->_filteredData, (Rows{2}));
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
    for (int step = 0; step < 6; ++step) {
        step < 3 ? model->selectNext() : model->selectPrevious();
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

TEST(PresetFilter, FindsWhatComparingEachNameFinds) {
    const char* const letters[] = {"a", "B", "`", "{", "c", " ", "ß", "é", "e\u0301", "🦋", "ﬁ", "\xFF"};
    std::mt19937 random(20261122); // NOLINT(cert-msc51-cpp): the same cases in each run
    const auto word = [&](std::size_t longest) {
        std::string text;
        for (auto length = random() % (longest + 1); length > 0; --length)
            text += letters[random() % std::size(letters)];
        return text;
    };
    for (int round = 0; round < 300; ++round) {
        std::vector<PromptData> prompts;
        for (auto count = random() % 40; count > 0; --count)
            prompts.push_back(preset(word(30), "", random() % 3 == 0 ? "nonContext" : "context"));
        PresetFilter filter;
        for (int search = 0; search < 20; ++search) {
            const std::string wanted = word(4);
            Rows expected;
            for (std::size_t i = 0; i < prompts.size(); ++i)
                if (prompts[i].promptType == "context" &&
                    uppercased(prompts[i].name).find(uppercased(wanted)) != std::string::npos)
                    expected.push_back(static_cast<std::int64_t>(i));
            ASSERT_EQ(filter.matching(prompts, wanted, true), expected) << wanted;
        }
    }
}

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
