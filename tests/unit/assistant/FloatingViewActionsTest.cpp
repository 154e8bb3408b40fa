#include "tests/unit/assistant/FloatingViewFixture.h"

namespace quillmoth {
namespace {

class FloatingViewActionsTest : public FloatingViewFixture {};

TEST_F(FloatingViewActionsTest, a_row_is_marked_when_it_is_selected_or_else_below_the_pointer) {
    using Mark = FloatingViewController::RowMark;
    view->presetRowClicked(2);
    view->presetRowEntered(3);
    view->historyRowClicked(0);
    view->historyRowEntered(1);
    const auto marks = [](const auto& markOf) {
        return std::vector<Mark>{markOf(0), markOf(1), markOf(2), markOf(3)};
    };
    EXPECT_EQ(marks([&](std::int64_t index) { return view->presetMark(index); }),
              (std::vector<Mark>{Mark::none, Mark::none, Mark::selected, Mark::hovered}));
    EXPECT_EQ(marks([&](std::int64_t index) { return view->historyMark(index); }),
              (std::vector<Mark>{Mark::selected, Mark::hovered, Mark::none, Mark::none}));
    view->presetRowEntered(2);
    EXPECT_EQ(view->presetMark(2), Mark::selected);
}

TEST_F(FloatingViewActionsTest, keys_bar_and_back_do_the_same) {
    for (const auto& dismiss : std::vector<std::function<void()>>{
             [&] { view->press(Key::cancel); }, [&] { view->barItemClicked(BarItem::cancelOrNewChat); },
             [&] { view->backClicked(); }}) {
        model->_command = std::string("x");
        dismiss();
        EXPECT_EQ(*model->_command, "");
    }
    for (const bool isOnTop : {true, false}) {
        view->barItemClicked(BarItem::onTop);
        EXPECT_EQ(model->_isOnTopBinding, isOnTop);
    }
    view->commandEdited("x");
    view->barItemClicked(BarItem::select);
    EXPECT_EQ(streamCount(), 1U);
}

TEST_F(FloatingViewActionsTest, a_double_click_runs_the_row_and_wipes_the_command) {
    view->commandEdited("wiped");
    view->presetRowDoubleClicked(DataModel::kTypedCommand);
    EXPECT_EQ(streamCount(), 0U);
    EXPECT_EQ(lines.back(), "EXIT PROMPT EQUAL NIL");
    view->presetRowClicked(3);
    EXPECT_EQ(streamCount(), 0U);
    const Texts names = assignments([&] { view->presetRowDoubleClicked(2); });
    EXPECT_EQ(Texts(names.begin(), names.begin() + 3), (Texts{"_command", "_selectedIndex", "_error"}));
    EXPECT_EQ(texts(model->_messages).back(), "user: Write a mail");
    serveData(200, piece("Dear"));
    store({"A", "B", "C"});
    model->_openHistory = true;
    view->historyRowDoubleClicked(2);
    EXPECT_EQ(texts(model->_messages), Texts{"user: A"});
}

TEST_F(FloatingViewActionsTest, the_two_history_toggles_differ) {
    model->_keyHistorySelected = 2;
    model->_keyHistoryHover = 1;
    view->barItemClicked(BarItem::history);
    EXPECT_TRUE(model->_openHistory);
    EXPECT_EQ(model->_keyHistorySelected, 2);
    view->press(Key::history);
    EXPECT_FALSE(model->_openHistory);
    EXPECT_EQ(model->_keyHistorySelected, 0);
    EXPECT_EQ(model->_keyHistoryHover, -1);
}

TEST_F(FloatingViewActionsTest, the_size_moves_by_two_between_its_bounds_and_is_stored) {
    for (int i = 0; i < 20; ++i)
        view->press(Key::larger);
    EXPECT_EQ(view->_fontSize, 40);
    for (int i = 0; i < 20; ++i)
        view->press(Key::smaller);
    EXPECT_EQ(view->_fontSize, 12);
    EXPECT_EQ(platform.userDefaults.number("saveFontSize", 0), 12);
    view->press(Key::larger);
    EXPECT_EQ(platform.userDefaults.number("saveFontSize", 0), 14);
    view->press(Key::defaultSize);
    EXPECT_EQ(platform.userDefaults.number("saveFontSize", 0), 16);
}

TEST_F(FloatingViewActionsTest, replacing_closes_the_panel_before_it_writes) {
    auto field = std::make_shared<platform::FakeAXUIElement>("field");
    field->set("AXValue", std::string("abc"));
    field->set("AXSelectedTextRange", platform::CFRange{1, 1});
    platform.accessibility.systemWide().set("AXFocusedUIElement", platform::AXUIElementRef(field));
    model->_responseValue = std::string("X");
    Texts panelCallsAtWrite;
    platform.accessibility.onWrite = [&](const std::string&) { panelCallsAtWrite = panelCalls(); };
    view->press(Key::replaceSelection);
    EXPECT_EQ(panelCallsAtWrite, kResign);
    const Texts& calls = platform.accessibility.calls;
    EXPECT_EQ(Texts(calls.end() - 2, calls.end()),
              (Texts{"set field AXValue \"aXc\"", "set field AXSelectedTextRange {1, 0}"}));
}

TEST_F(FloatingViewActionsTest, an_answer_that_was_not_taken_is_told_with_the_panel_and_on_the_clipboard) {
    auto field = std::make_shared<platform::FakeAXUIElement>("field");
    field->writeErrors["AXSelectedText"] = platform::kAXErrorFailure;
    platform.accessibility.systemWide().set("AXFocusedUIElement", platform::AXUIElementRef(field));
    platform.workspace.name = "Kate";
    platform.pasteboard.contents = "kept";
    view->press(Key::replaceSelection);
    EXPECT_TRUE(view->_notice->ends_with("Kate did not let its selection be erased.")) << *view->_notice;
    EXPECT_EQ(platform.pasteboard.contents, "kept");
    view->noticeRead();
    EXPECT_EQ(*view->_notice, "");

    model->_responseValue = std::string("answer");
    const std::size_t before = panelCalls().size();
    view->press(Key::replaceSelection);
    EXPECT_EQ(*view->_notice, "Kate did not take the answer. It is on the clipboard: paste it with Ctrl+V.");
    EXPECT_EQ(platform.pasteboard.contents, "answer");
    EXPECT_EQ(*model->_responseValue, "answer");
    const Texts calls = panelCalls();
    EXPECT_EQ(Texts(calls.begin() + static_cast<std::ptrdiff_t>(before), calls.end()),
              (kResign + Texts{"setFrameUsingName savedFrame", "orderFront", "makeKeyWindow"}));
    EXPECT_TRUE(model->_FloatingViewPanel.get()->isOpen);
}

TEST_F(FloatingViewActionsTest, copying_all_writes_the_clipboard_and_closes_unless_pinned) {
    model->_responseValue = std::string("answer");
    view->press(Key::onTop);
    settle();
    view->press(Key::copyAll);
    EXPECT_EQ(platform.pasteboard.calls, (Texts{"clearContents", "setString answer"}));
    platform.panelWindows.resignMain();
    EXPECT_TRUE(panelCalls().empty());
    view->press(Key::onTop);
    model->_FloatingViewPanel.get()->isOpen = true;
    view->barItemClicked(BarItem::copyAll);
    EXPECT_EQ(platform.pasteboard.calls.size(), 4U);
    EXPECT_FALSE(model->_FloatingViewPanel.get()->isOpen);
    platform.panelWindows.resignMain();
    EXPECT_EQ(panelCalls(), kResign + kResign);
}

TEST_F(FloatingViewActionsTest, asking_again_needs_a_response_and_a_question_and_loses_none) {
    const auto askAgain = [&] {
        const bool isPresent = view->press(Key::regenerate);
        view->barItemClicked(BarItem::regenerate);
        return std::pair(isPresent, *model->_isLoading);
    };
    const std::pair idle{true, false};
    const std::pair runs{true, true};
    EXPECT_FALSE(view->press(Key::regenerate));
    ask("one");
    serveData(400, "");
    EXPECT_EQ(askAgain(), idle) << "there is nothing to ask again";
    EXPECT_EQ(model->_messages->size(), 1U);
    startAnew();
    ask("one");
    failToConnect("down");
    EXPECT_EQ(askAgain(), idle) << "the text is in the field";

    converse("one", "1");
    ask("two");
    failToConnect("down");
    EXPECT_EQ(askAgain(), runs);
    EXPECT_EQ(texts(model->_messages), (Texts{"system: Your are helpful assistant", "user: one"}));
    failToConnect("down");
    EXPECT_EQ(*model->_error, "down");

    startAnew();
    ask("three");
    model->dismissStep();
    settle();
    EXPECT_EQ(askAgain(), runs);
    serveData(200, piece("3"));
    EXPECT_EQ(texts(model->_messages),
              (Texts{"system: Your are helpful assistant", "user: three", "assistant: 3"}));

    model->storeConversation("Empty", {}, -1);
    openStored(0);
    EXPECT_EQ(askAgain(), idle);
}

} // namespace
} // namespace quillmoth
