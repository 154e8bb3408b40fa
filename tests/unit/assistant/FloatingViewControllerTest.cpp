#include "tests/unit/assistant/FloatingViewFixture.h"

namespace quillmoth {
namespace {

class FloatingViewControllerTest : public FloatingViewFixture {};

TEST_F(FloatingViewControllerTest, typing_narrows_the_list_and_selects_the_typed_command) {
    model->_filteredData = Rows();
    view->viewAppeared();
    EXPECT_EQ(*model->_filteredData, (Rows{2, 3}));
    // A colon in front keeps the list, and not the selection.
    for (const auto& [command, rows] :
         {std::pair{"ca", Rows{3}}, {"", {2, 3}}, {":ca", {2, 3}}, {"ca:", {}}}) {
        model->_selectedIndex = 2;
        view->commandEdited(command);
        EXPECT_EQ(*model->_filteredData, rows) << command;
        EXPECT_EQ(model->_selectedIndex, -1) << command;
    }
}

TEST_F(FloatingViewControllerTest, a_command_written_by_the_model_is_followed_at_the_end_of_the_turn) {
    view->commandEdited("ca");
    model->runPrompt();
    EXPECT_EQ(*model->_filteredData, (Rows{3}));
    settle();
    EXPECT_TRUE(model->_filteredData->empty()) << "no name holds a blank";
    serveData(200, piece("x"));
    settle();
    EXPECT_EQ(*model->_filteredData, (Rows{2, 3}));
}

TEST_F(FloatingViewControllerTest, a_list_made_by_a_capture_or_an_edit_follows_the_command) {
    for (const char* command : {"ca", ":ca"}) {
        view->commandEdited("");
        view->commandEdited(command);
        const Rows rows = *model->_filteredData;
        model->captureContext();
        settle();
        EXPECT_EQ(*model->_filteredData, rows);
        view->fieldCommand(FieldCommand::moveDown, false);
        EXPECT_EQ(model->_selectedIndex, rows.front());
        model->refreshList();
        settle();
        EXPECT_EQ(*model->_filteredData, rows);
        EXPECT_EQ(model->_selectedIndex, -1);
    }
    view->commandEdited("ca");
    view->presetRowClicked(3);
    model->runPrompt();
    settle();
    view->backClicked();
    settle();
    EXPECT_EQ(*model->_filteredData, (Rows{2, 3})) << "leaving the form lists all";
}

TEST_F(FloatingViewControllerTest, keys_of_the_field_act_and_are_consumed_as_told) {
    EXPECT_EQ(view->fieldCommand(FieldCommand::moveDown, false), FieldAnswer::notConsumed);
    EXPECT_EQ(model->_selectedIndex, 2);
    EXPECT_EQ(view->fieldCommand(FieldCommand::moveUp, false), FieldAnswer::notConsumed);
    EXPECT_EQ(model->_selectedIndex, -1);
    view->commandEdited("x");
    EXPECT_EQ(view->fieldCommand(FieldCommand::insertNewline, true), FieldAnswer::insertLineBreak);
    EXPECT_EQ(streamCount(), 0U);
    EXPECT_EQ(view->fieldCommand(FieldCommand::complete, false), FieldAnswer::consumed);
    EXPECT_EQ(*model->_command, "");
    view->commandEdited("x");
    EXPECT_EQ(view->fieldCommand(FieldCommand::insertNewline, false), FieldAnswer::consumed);
    EXPECT_EQ(streamCount(), 1U);
    EXPECT_EQ(view->fieldCommand(FieldCommand::other, false), FieldAnswer::notConsumed);
}

TEST_F(FloatingViewControllerTest, the_content_follows_the_state) {
    EXPECT_EQ(view->content(), Content::hintAndPresets);
    EXPECT_EQ(view->placeholder(), "Ask AI...");
    model->_isContext = true;
    model->_status = std::string("Context found press esc to remove context");
    EXPECT_EQ(view->placeholder(), "Search for prompts preset or ask AI...");
    EXPECT_EQ(view->content(), Content::presets);
    view->commandEdited("x");
    EXPECT_EQ(view->content(), Content::hintAndPresets);
    model->_isLoading = true;
    EXPECT_EQ(view->content(), Content::conversation) << "from the start of a request on";
    model->_isLoading = false;
    model->_responseValue = std::string("x");
    EXPECT_EQ(view->content(), Content::conversation);
    model->_openHistory = true;
    EXPECT_EQ(view->content(), Content::history);
    model->_nonContextPrompt = true;
    EXPECT_EQ(view->content(), Content::form);
}

TEST_F(FloatingViewControllerTest, the_bar_follows_the_state) {
    using Bar = std::vector<BarItem>;
    EXPECT_EQ(view->bottomBar(), (Bar{BarItem::select, BarItem::history, BarItem::onTop, BarItem::status}));
    model->_responseValue = std::string("x");
    EXPECT_EQ(view->bottomBar(), (Bar{BarItem::select, BarItem::history, BarItem::onTop, BarItem::regenerate,
                                      BarItem::cancelOrNewChat, BarItem::copyAll}));
    model->_openHistory = true;
    EXPECT_EQ(view->bottomBar(), (Bar{BarItem::select, BarItem::history, BarItem::onTop,
                                      BarItem::cancelOrNewChat, BarItem::copyAll}));
    EXPECT_EQ(view->cancelLabel(), "New chat");
    model->_isLoading = true;
    EXPECT_EQ(view->cancelLabel(), "Cancel");
}

TEST_F(FloatingViewControllerTest, a_message_that_appears_takes_the_stored_size_and_switch_over) {
    view->_fontSize = 30;
    view->_markdownOn = false;
    view->messageRowAppeared();
    EXPECT_EQ(view->_fontSize, 16);
    EXPECT_TRUE(view->_markdownOn);
    platform.userDefaults.set("saveFontSize", 20.0);
    platform.userDefaults.set("markdownOnStorage", false);
    EXPECT_EQ(view->_fontSize, 16);
    view->messageRowAppeared();
    EXPECT_EQ(view->_fontSize, 20);
    EXPECT_FALSE(view->_markdownOn);
    view->press(Key::markdown);
    EXPECT_TRUE(platform.userDefaults.boolean("markdownOnStorage", false));
}

TEST_F(FloatingViewControllerTest, the_walk_goes_in_the_order_of_the_blanks_and_ends_behind_the_greatest) {
    view->formFieldEdited(99, "x");
    model->_focusTemp = std::vector<std::int64_t>{1, 5, 3};
    model->_command = std::string("x");
    view->returnInFormField(5);
    EXPECT_EQ(model->_messages->size(), 2U) << "sent";
    view->returnInFormField(1);
    EXPECT_EQ(*view->_focusField, 5);
}

TEST_F(FloatingViewControllerTest, the_field_gets_the_focus_when_asked_for_and_when_an_answer_is_complete) {
    int focused = 0;
    const Subscription subscription = view->onFieldFocus([&] { ++focused; });
    model->_didFocus = true;
    platform.runUntilIdle();
    EXPECT_GE(focused, 1);
    EXPECT_TRUE(model->_didFocus);
    platform.mainQueue.advance(0.05);
    EXPECT_FALSE(model->_didFocus);
    settle();
    focused = 0;
    ask("one");
    settle();
    EXPECT_EQ(focused, 0);
    serveData(200, piece("1"));
    settle();
    EXPECT_GE(focused, 1);
    EXPECT_FALSE(model->_didFocus);
}

TEST_F(FloatingViewControllerTest, all_changes_of_a_turn_are_one_update) {
    int updates = 0;
    const Subscription subscription = view->onUpdate([&] { ++updates; });
    const auto grow = [&] { model->_responseValue.mutate([](std::string& text) { text += 'x'; }); };
    const std::vector<std::function<void()>> changes{
        [&] {
            for (int i = 0; i < 1000; ++i)
                grow();
        },
        [&] { view->_fontSize = 20; },
        [&] { model->_PromptM.get()->edit(0, [](PromptData& each) { each.name = "x"; }); },
        [&] {
            grow();
            view->update();
        },
    };
    for (const auto& change : changes) {
        updates = 0;
        change();
        platform.mainQueue.runUntilIdle();
        EXPECT_EQ(updates, 1);
    }
}

} // namespace
} // namespace quillmoth
