#include "Quillmoth/Capture/SelectionWriter.h"

#include "tests/unit/capture/CaptureFixture.h"

namespace quillmoth {

namespace {

using platform::AXValue;
using platform::CFRange;

class SelectionWriterTest : public CaptureFixture {
protected:
    WriteResult write() { return SelectionWriter(platform.accessibility).write("X"); }
};

TEST_F(SelectionWriterTest, a_text_is_spliced_over_the_selection_in_utf16_units_and_the_caret_put_before_it) {
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
        EXPECT_EQ(write(), WriteResult::written);
        EXPECT_EQ(platform.accessibility.calls,
                  (Texts{"system", "copy system AXFocusedUIElement", "copy field AXValue",
                         "copy field AXSelectedTextRange",
                         "set field AXValue " + platform::describe(AXValue(std::string(each.result))),
                         "set field AXSelectedTextRange " +
                             platform::describe(AXValue(CFRange{each.range.location, 0}))}));
    }
}

TEST_F(SelectionWriterTest, what_was_not_written_is_told) {
    field->set("AXValue", std::string("abc"));
    EXPECT_EQ(write(), WriteResult::notEditable);
    for (const CFRange range : {CFRange{-1, 1}, CFRange{1, -1}}) {
        field->set("AXSelectedTextRange", range);
        EXPECT_EQ(write(), WriteResult::notEditable);
    }
    field->attributes.erase("AXValue");
    field->set("AXSelectedTextRange", CFRange{0, 1});
    EXPECT_EQ(write(), WriteResult::notEditable);
    for (const std::string& call : platform.accessibility.calls)
        EXPECT_FALSE(call.starts_with("set")) << call;
    field->set("AXValue", std::string("abc"));
    field->writeErrors["AXValue"] = -25205;
    EXPECT_EQ(write(), WriteResult::refused);
    platform.accessibility.systemWide().fail("AXFocusedUIElement", -25212);
    EXPECT_EQ(write(), WriteResult::noFocus);
    platform.accessibility.systemWide().set("AXFocusedUIElement", AXValue());
    EXPECT_THROW(write(), std::runtime_error);
}

} // namespace

} // namespace quillmoth
