#include "tests/unit/assistant/AssistantFixture.h"

namespace quillmoth {

namespace {

using platform::AXValue;
using platform::CFRange;
using platform::FakeAXTextMarkerRange;
using platform::FakeAXUIElement;

constexpr const char* kFound = "Context found press esc to remove context";

class AccessibilityCaptureTest : public AssistantFixture {
protected:
    AccessibilityCaptureTest() : field(std::make_shared<FakeAXUIElement>("field")) {
        platform.accessibility.systemWide().set("AXFocusedUIElement", platform::AXUIElementRef(field));
    }

    void offerMarkedText(const std::string& text) {
        field->set("AXSelectedTextMarkerRange",
                   platform::AXTextMarkerRangeRef(std::make_shared<FakeAXTextMarkerRange>("range")));
        field->parameterizedAttributes["AXAttributedStringForTextMarkerRange"] = {.error = 0, .value = text};
    }

    std::shared_ptr<FakeAXUIElement> field;
};

TEST_F(AccessibilityCaptureTest, a_selection_becomes_the_context) {
    field->set("AXSelectedText", std::string(" \n"));
    model->_openHistory = true;
    const Texts names = assignments([&] { model->captureContext(); });
    EXPECT_EQ(*model->_selectedValue, " \n");
    EXPECT_TRUE(model->_isContext);
    EXPECT_EQ(*model->_status, kFound);
    EXPECT_EQ(names,
              (Texts{"_openHistory", "_status", "_status", "_selectedValue", "_isContext", "_filteredData",
                     "_filteredData", "_selectedIndex", "_selectedIndex", "_hoverIndex"}));
    EXPECT_EQ(model->_filteredData->front(), 0);
}

TEST_F(AccessibilityCaptureTest, the_front_application_is_woken_before_its_focus_is_read) {
    field->set("AXSelectedText", std::string("x"));
    model->captureContext();
    const Texts& calls = platform.accessibility.calls;
    EXPECT_EQ(calls,
              (Texts{"trusted", "system", "application 42", "set application 42 AXManualAccessibility true",
                     "set application 42 AXEnhancedUserInterface true", "copy system AXFocusedUIElement",
                     "copy field AXSelectedText"}));
}

TEST_F(AccessibilityCaptureTest, an_empty_or_strange_selection_is_none) {
    for (const AXValue& value : {AXValue(std::string()), AXValue(3.5), AXValue()}) {
        model->_selectedValue = std::string("old");
        model->_isContext = true;
        field->set("AXSelectedText", value);
        model->captureContext();
        EXPECT_EQ(*model->_status, "No selection");
        EXPECT_EQ(*model->_selectedValue, "");
        EXPECT_FALSE(model->_isContext);
        EXPECT_EQ(model->_filteredData->front(), 2);
    }
}

TEST_F(AccessibilityCaptureTest, marked_text_is_the_second_way) {
    offerMarkedText("web");
    Texts states;
    const Subscription subscription = model->objectWillChange([&](std::string_view name) {
        if (name == "_isContext" || name == "_status")
            states.push_back(*model->_status);
    });
    model->captureContext();
    EXPECT_EQ(*model->_selectedValue, "web");
    EXPECT_EQ(*model->_status, kFound);
    EXPECT_TRUE(model->_isContext);
    EXPECT_NE(std::find(states.begin(), states.end(), "No focus found"), states.end());
}

TEST_F(AccessibilityCaptureTest, a_focus_without_text_keeps_the_former_text_but_no_context) {
    model->_selectedValue = std::string("old");
    model->_isContext = true;
    model->captureContext();
    EXPECT_EQ(*model->_status, "No focus found");
    EXPECT_EQ(*model->_selectedValue, "old");
    EXPECT_FALSE(model->_isContext);
    offerMarkedText("");
    model->captureContext();
    EXPECT_EQ(*model->_selectedValue, "old");
}

TEST_F(AccessibilityCaptureTest, a_failed_focus_read_leaves_the_former_context_in_force) {
    model->_selectedValue = std::string("old");
    model->_isContext = true;
    platform.accessibility.systemWide().fail("AXFocusedUIElement", -25212);
    model->captureContext();
    EXPECT_EQ(lines.back(), "Error: -25212");
    EXPECT_EQ(*model->_status, "");
    EXPECT_EQ(*model->_selectedValue, "old");
    EXPECT_TRUE(model->_isContext);
}

TEST_F(AccessibilityCaptureTest, a_missing_grant_is_told_and_outlasts_a_later_grant) {
    field->set("AXSelectedText", std::string("x"));
    platform.accessibility.isTrusted = false;
    model->captureContext();
    EXPECT_EQ(model->_error->rfind("You have not enabled accessibility access. Quillmoth requires", 0), 0U);
    EXPECT_EQ(*model->_selectedValue, "x");
    platform.accessibility.isTrusted = true;
    model->captureContext();
    EXPECT_FALSE(model->_error->empty());
}

TEST_F(AccessibilityCaptureTest, what_the_logic_takes_for_granted_is_a_fatal_fault) {
    platform.accessibility.systemWide().set("AXFocusedUIElement", AXValue());
    EXPECT_THROW(model->captureContext(), FatalFault);
    EXPECT_THROW(model->replaceSelection("x"), FatalFault);
    platform.workspace.frontmost.reset();
    EXPECT_THROW(model->captureContext(), FatalFault);
}

TEST_F(AccessibilityCaptureTest, an_answer_is_spliced_over_the_selection_in_utf16_units) {
    struct Case {
        const char* value;
        CFRange range;
        const char* result;
    };

    const Case cases[] = {
        {"one two three", {4, 3}, "one X three"},
        {"🦉 two", {3, 3}, "🦉 X"},
        {"abc", {3, 0}, "abcX"},
        {"abc", {2, 100}, "abX"},
        {"é🦉z", {1, 2}, "éXz"},
        {"", {0, 0}, "X"},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.value);
        field->set("AXValue", std::string(each.value));
        field->set("AXSelectedTextRange", each.range);
        platform.accessibility.calls.clear();
        model->replaceSelection("X");
        const Texts& calls = platform.accessibility.calls;
        ASSERT_EQ(calls.size(), 6U);
        EXPECT_EQ(calls[4], "set field AXValue " + platform::describe(AXValue(std::string(each.result))));
        EXPECT_EQ(calls[5], "set field AXSelectedTextRange " +
                                platform::describe(AXValue(CFRange{each.range.location, 0})));
    }
}

TEST_F(AccessibilityCaptureTest, an_element_without_value_or_range_is_not_written) {
    field->set("AXValue", std::string("abc"));
    model->replaceSelection("X");
    field->attributes.clear();
    field->set("AXSelectedTextRange", CFRange{0, 1});
    model->replaceSelection("X");
    for (const std::string& call : platform.accessibility.calls)
        EXPECT_NE(call.rfind("set", 0), 0U) << call;
}

} // namespace

} // namespace quillmoth
