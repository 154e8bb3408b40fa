#include "Foundation/Limits.h"
#include "Quillmoth/Assistant/CaptureTexts.h"
#include "tests/unit/assistant/AssistantFixture.h"

namespace quillmoth {
namespace {

constexpr const char* kFound = "Context found press esc to remove context";

class ContextCaptureTest : public AssistantFixture {
protected:
    ContextCaptureTest() {
        platform.accessibility.systemWide().set("AXFocusedUIElement", platform::AXUIElementRef(field));
        holdOld();
    }

    void holdOld() {
        hold("old");
        model->_filteredData = Rows();
    }

    Texts capture() {
        return assignments([&] { model->captureContext(); });
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
        EXPECT_EQ(capture(),
                  (Texts{"_openHistory", "_status", "_status", "_selectedValue", "_isContext"} + kRefresh));
        EXPECT_FALSE(model->_openHistory);
        expectContext(text, text.empty() ? "No selection" : kFound, !text.empty());
    }
}

TEST_F(ContextCaptureTest, marked_text_is_told_as_no_focus_until_it_is_found) {
    const Texts lost = Texts{"_openHistory", "_status", "_status", "_isContext"} + kRefresh;
    EXPECT_EQ(capture(), lost);
    expectContext("old", "No focus found", false);

    field->set("AXSelectedTextMarkerRange",
               platform::AXTextMarkerRangeRef(std::make_shared<platform::FakeAXTextMarkerRange>("range")));
    field->parameterizedAttributes["AXAttributedStringForTextMarkerRange"] = {.error = 0, .value = "web"};
    EXPECT_EQ(capture(), (lost + Texts{"_selectedValue", "_status", "_isContext"} + kRefresh));
    expectContext("web", kFound, true);
    Texts statuses;
    const Subscription subscription = model->objectWillChange([&](std::string_view) {
        if (statuses.empty() || statuses.back() != *model->_status)
            statuses.push_back(*model->_status);
    });
    model->captureContext();
    EXPECT_EQ(statuses, (Texts{kFound, "", "No focus found", kFound}));
}

TEST_F(ContextCaptureTest, a_failed_focus_read_leaves_the_former_context_in_force) {
    platform.accessibility.systemWide().fail("AXFocusedUIElement", -25212);
    EXPECT_EQ(capture(), (Texts{"_openHistory", "_status"}));
    EXPECT_EQ(lines.back(), "Error: -25212");
    expectContext("old", "", true);
}

TEST_F(ContextCaptureTest, a_missing_grant_is_told_and_outlasts_a_later_grant) {
    field->set("AXSelectedText", std::string("x"));
    platform.accessibility.isTrusted = false;
    EXPECT_EQ(
        capture(),
        (Texts{"_openHistory", "_status", "_error", "_status", "_selectedValue", "_isContext"} + kRefresh));
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
        holdOld();
        platform.pasteboard.contents = "saved";
        EXPECT_EQ(capture(), (Texts{"_openHistory", "_status"}));
        if (!text.empty())
            platform.pasteboard.contents = text;
        platform.pasteboard.calls.clear();
        platform.mainQueue.advance(0.19);
        expectContext("old", "", true);
        std::size_t writesSeen = 0;
        const Subscription subscription = model->objectWillChange(
            [&](std::string_view) { writesSeen = std::max(writesSeen, platform.pasteboard.calls.size()); });
        EXPECT_EQ(assignments([&] { platform.mainQueue.advance(0.02); }),
                  text.empty() ? (Texts{"_selectedValue", "_status", "_isContext"} + kRefresh)
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

TEST_F(ContextCaptureTest, keys_that_cannot_be_sent_are_told_and_leave_the_clipboard_alone) {
    platform.userDefaults.set("useCopyHack", true);
    platform.keyboardEvents.failsToMakeEvents = true;
    platform.pasteboard.contents = "kept";
    model->captureContext();
    platform.mainQueue.advance(1);
    EXPECT_EQ(*model->_error, kNoCopyMessage);
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

TEST_F(ContextCaptureTest, a_selection_that_is_too_long_is_cut_at_a_character_and_that_is_told) {
    std::string text;
    // Of three bytes each, so that the limit is in the midst of one.
    while (text.size() <= limits::kSelection)
        text += "€";
    const auto expectCut = [&] {
        platform.mainQueue.advance(1);
        EXPECT_EQ(model->_selectedValue->size(), limits::kSelection - limits::kSelection % 3);
        EXPECT_TRUE(model->_selectedValue->ends_with("€"));
        EXPECT_EQ(*model->_status, kFound);
        EXPECT_TRUE(model->_error->starts_with("The selected text is longer than 1 MB.")) << *model->_error;
        model->_error = std::string();
        holdOld();
    };
    field->set("AXSelectedText", text);
    model->captureContext();
    expectCut();
    platform.userDefaults.set("useCopyHack", true);
    model->captureContext();
    platform.pasteboard.contents = text;
    expectCut();
    platform.workspace.terminalSelection = text;
    model->captureContext();
    expectCut();
    platform.workspace.terminalSelection = text.substr(0, limits::kSelection - limits::kSelection % 3);
    model->captureContext();
    EXPECT_EQ(*model->_error, "");
}

} // namespace
} // namespace quillmoth
