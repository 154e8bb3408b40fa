#include "tests/unit/assistant/AssistantFixture.h"

namespace quillmoth {

namespace {

using platform::FakeAXTextMarkerRange;

using Rows = std::vector<std::int64_t>;

constexpr const char* kFound = "Context found press esc to remove context";

/// The assignments of a list refresh.
const Texts kRefresh{"_filteredData", "_filteredData", "_selectedIndex", "_selectedIndex", "_hoverIndex"};

Texts operator+(Texts left, const Texts& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

class ContextCaptureTest : public AssistantFixture {
protected:
    ContextCaptureTest() {
        platform.accessibility.systemWide().set("AXFocusedUIElement", platform::AXUIElementRef(field));
        hold("old");
    }

    void hold(const std::string& context) {
        model->_selectedValue = context;
        model->_isContext = true;
        model->_error = std::string();
        model->_filteredData = std::vector<std::int64_t>();
    }

    void offerMarkedText(const std::string& text) {
        field->set("AXSelectedTextMarkerRange",
                   platform::AXTextMarkerRangeRef(std::make_shared<FakeAXTextMarkerRange>("range")));
        field->parameterizedAttributes["AXAttributedStringForTextMarkerRange"] = {.error = 0, .value = text};
    }

    /// The values of `_status` while `action` runs, from its first assignment to the end.
    template<class Action>
    Texts statuses(Action&& action) {
        Texts values;
        const Subscription subscription = model->objectWillChange([&](std::string_view name) {
            if (name == "_status")
                values.push_back(*model->_status);
        });
        std::forward<Action>(action)();
        values.push_back(*model->_status);
        return {values.begin() + 1, values.end()};
    }

    /// A status that is not empty has come with a list.
    void expectContext(const std::string& text, const std::string& status, bool context) {
        EXPECT_EQ(*model->_selectedValue, text);
        EXPECT_EQ(*model->_status, status);
        EXPECT_EQ(model->_isContext, context);
        EXPECT_EQ(*model->_filteredData, status.empty() ? Rows{} : context ? (Rows{0, 1}) : (Rows{2, 3}));
    }

    std::shared_ptr<platform::FakeAXUIElement> field = std::make_shared<platform::FakeAXUIElement>("field");
};

TEST_F(ContextCaptureTest, a_selected_text_becomes_the_context_and_an_empty_one_ends_it) {
    for (const std::string text : {" \n", ""}) {
        model->_openHistory = true;
        field->set("AXSelectedText", text);
        const Texts names = assignments([&] { model->captureContext(); });
        EXPECT_EQ(names,
                  (Texts{"_openHistory", "_status", "_status", "_selectedValue", "_isContext"} + kRefresh));
        EXPECT_FALSE(model->_openHistory);
        expectContext(text, text.empty() ? "No selection" : kFound, !text.empty());
    }
}

TEST_F(ContextCaptureTest, marked_text_is_told_as_no_focus_until_it_is_found) {
    const Texts lost = Texts{"_openHistory", "_status", "_status", "_isContext"} + kRefresh;
    EXPECT_EQ(assignments([&] { model->captureContext(); }), lost);
    expectContext("old", "No focus found", false);

    offerMarkedText("web");
    EXPECT_EQ(assignments([&] { model->captureContext(); }),
              (lost + Texts{"_selectedValue", "_status", "_isContext"} + kRefresh));
    expectContext("web", kFound, true);
    EXPECT_EQ(statuses([&] { model->captureContext(); }), (Texts{"", "No focus found", kFound}));
}

TEST_F(ContextCaptureTest, a_failed_focus_read_leaves_the_former_context_in_force) {
    platform.accessibility.systemWide().fail("AXFocusedUIElement", -25212);
    EXPECT_EQ(assignments([&] { model->captureContext(); }), (Texts{"_openHistory", "_status"}));
    EXPECT_EQ(lines.back(), "Error: -25212");
    expectContext("old", "", true);
}

TEST_F(ContextCaptureTest, a_missing_grant_is_told_and_outlasts_a_later_grant) {
    field->set("AXSelectedText", std::string("x"));
    platform.accessibility.isTrusted = false;
    const Texts names = assignments([&] { model->captureContext(); });
    EXPECT_EQ(Texts(names.begin(), names.begin() + 4),
              (Texts{"_openHistory", "_status", "_error", "_status"}));
    EXPECT_TRUE(model->_error->starts_with("You have not enabled accessibility access. Quillmoth requires"));
    expectContext("x", kFound, true);
    platform.accessibility.isTrusted = true;
    model->captureContext();
    EXPECT_FALSE(model->_error->empty());
}

TEST_F(ContextCaptureTest, a_copy_is_read_a_fixed_time_later_and_the_clipboard_comes_back_last) {
    platform.userDefaults.set("useCopyHack", true);
    platform.accessibility.isTrusted = false;
    for (const std::string text : {"fresh", ""}) {
        hold("old");
        platform.pasteboard.contents = "saved";
        EXPECT_EQ(assignments([&] { model->captureContext(); }), (Texts{"_openHistory", "_status"}));
        if (!text.empty())
            platform.pasteboard.contents = text;
        platform.pasteboard.calls.clear();
        platform.mainQueue.advance(0.19);
        expectContext("old", "", true);
        std::size_t writesSeen = 0;
        const Subscription subscription = model->objectWillChange(
            [&](std::string_view) { writesSeen = std::max(writesSeen, platform.pasteboard.calls.size()); });
        const Texts names = assignments([&] { platform.mainQueue.advance(0.02); });
        EXPECT_EQ(names, text.empty()
                             ? (Texts{"_selectedValue", "_status", "_isContext"} + kRefresh)
                             : (Texts{"_selectedValue", "_isContext"} + kRefresh + Texts{"_status"}));
        expectContext(text, text.empty() ? "No selection" : kFound, !text.empty());
        EXPECT_EQ(writesSeen, 0U);
        EXPECT_EQ(platform.pasteboard.contents, "saved");
    }
    EXPECT_TRUE(platform.accessibility.calls.empty());
    EXPECT_EQ(*model->_error, "");
}

TEST_F(ContextCaptureTest, a_copy_equal_to_the_clipboard_changes_nothing) {
    platform.userDefaults.set("useCopyHack", true);
    platform.pasteboard.contents = "same";
    model->captureContext();
    platform.pasteboard.contents = "same";
    platform.pasteboard.calls.clear();
    EXPECT_EQ(assignments([&] { platform.mainQueue.advance(0.2); }), Texts{});
    EXPECT_TRUE(platform.pasteboard.calls.empty());
}

TEST_F(ContextCaptureTest, over_a_terminal_its_selection_is_taken_at_once_and_nothing_is_copied) {
    platform.userDefaults.set("useCopyHack", true);
    platform.pasteboard.contents = "saved";
    for (const std::string selected : {"saved", ""}) {
        platform.workspace.terminalSelection = selected;
        model->captureContext();
        expectContext(selected, selected.empty() ? "No selection" : kFound, !selected.empty());
    }
    platform.mainQueue.advance(1);
    EXPECT_TRUE(platform.keyboardEvents.posts.empty());
    EXPECT_TRUE(platform.pasteboard.calls.empty());
}

TEST_F(ContextCaptureTest, an_answer_is_written_over_the_selection) {
    field->set("AXValue", std::string("abc"));
    field->set("AXSelectedTextRange", platform::CFRange{1, 1});
    model->replaceSelection("X");
    EXPECT_EQ(platform.accessibility.calls.back(), "set field AXSelectedTextRange {1, 0}");
}

} // namespace

} // namespace quillmoth
