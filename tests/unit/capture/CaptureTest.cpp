#include "Quillmoth/Capture/CopyCapture.h"
#include "Quillmoth/Capture/SelectionCapture.h"
#include "Quillmoth/Capture/SelectionWriter.h"
#include "tests/unit/PlatformFixture.h"

#include <memory>

namespace quillmoth {
namespace {

using platform::AXValue;
using platform::CFRange;

/// An application in front whose element "field" has the focus.
class CaptureFixture : public PlatformFixture {
protected:
    CaptureFixture() {
        platform.workspace.frontmost = 42;
        platform.accessibility.systemWide().set("AXFocusedUIElement", platform::AXUIElementRef(field));
    }

    std::shared_ptr<platform::FakeAXUIElement> field = std::make_shared<platform::FakeAXUIElement>("field");
};

class SelectionCaptureTest : public CaptureFixture {
protected:
    CaptureResult capture() { return SelectionCapture(platform.accessibility, platform.workspace).capture(); }

    void offerMarkedText(const AXValue& text) {
        field->set(
            "AXSelectedTextMarkerRange",
            platform::AXTextMarkerRangeRef(std::make_shared<platform::FakeAXTextMarkerRange>("range")));
        field->parameterizedAttributes["AXAttributedStringForTextMarkerRange"] = {.error = 0, .value = text};
    }
};

TEST_F(SelectionCaptureTest, a_selected_text_is_found_and_anything_else_in_its_place_is_none) {
    const CaptureResult none{.obstacle = CaptureObstacle::nothingSelected};
    field->set("AXSelectedText", std::string(" \n"));
    offerMarkedText(std::string("marked"));
    EXPECT_EQ(capture(), (CaptureResult{.way = CaptureWay::selectedText, .text = " \n"}));
    for (const AXValue& value : {AXValue(std::string()), AXValue(3.5), AXValue()}) {
        field->set("AXSelectedText", value);
        EXPECT_EQ(capture(), none);
    }
}

TEST_F(SelectionCaptureTest, the_primary_selection_is_taken_where_accessibility_does_not_rule_it_out) {
    const CaptureResult primary{.way = CaptureWay::primary, .text = "picked"};
    platform.workspace.primary = "picked";
    EXPECT_EQ(capture(), primary) << "an element without a text";
    field->set("AXSelectedText", AXValue());
    EXPECT_EQ(capture(), primary) << "one that does not know";
    field->set("AXSelectedText", std::string());
    EXPECT_EQ(capture().obstacle, CaptureObstacle::nothingSelected) << "one that knows of none";
    field->set("AXSelectedText", std::string("told"));
    EXPECT_EQ(capture().text, "told");
    platform.accessibility.systemWide().fail("AXFocusedUIElement", -25211);
    EXPECT_EQ(capture(), (CaptureResult{.way = CaptureWay::primary, .text = "picked", .error = -25211}));
    platform.workspace.primary = "";
    EXPECT_EQ(capture(), (CaptureResult{.obstacle = CaptureObstacle::noFocus, .error = -25211}));
}

TEST_F(SelectionCaptureTest, marked_text_is_found_where_the_element_tells_no_selected_text) {
    const CaptureResult none{.way = CaptureWay::markerRange, .obstacle = CaptureObstacle::noText};
    EXPECT_EQ(capture(), none);
    EXPECT_EQ(platform.accessibility.calls.back(), "copy field AXSelectedTextMarkerRange");
    offerMarkedText(std::string());
    EXPECT_EQ(capture(), none);
    offerMarkedText(AXValue());
    EXPECT_EQ(capture(), none);
    offerMarkedText(std::string("web"));
    EXPECT_EQ(capture(), (CaptureResult{.way = CaptureWay::markerRange, .text = "web"}));
    EXPECT_EQ(platform.accessibility.calls.back(),
              "copy field AXAttributedStringForTextMarkerRange for range");
}

TEST_F(SelectionCaptureTest, the_front_application_is_woken_before_its_focus_is_read) {
    field->set("AXSelectedText", std::string("x"));
    EXPECT_TRUE(capture().isPermitted);
    EXPECT_EQ(platform.accessibility.calls,
              (Texts{"trusted", "system", "application 42", "set application 42 AXManualAccessibility true",
                     "set application 42 AXEnhancedUserInterface true", "copy system AXFocusedUIElement",
                     "copy field AXSelectedText"}));
}

TEST_F(SelectionCaptureTest, a_missing_permission_and_a_failed_focus_read_are_told) {
    field->set("AXSelectedText", std::string("x"));
    platform.accessibility.isTrusted = false;
    EXPECT_EQ(capture(), (CaptureResult{.text = "x", .isPermitted = false}));
    platform.accessibility.systemWide().fail("AXFocusedUIElement", -25212);
    EXPECT_EQ(capture(),
              (CaptureResult{.obstacle = CaptureObstacle::noFocus, .error = -25212, .isPermitted = false}));
}

TEST_F(SelectionCaptureTest, no_application_and_no_element_are_fatal_faults) {
    platform.accessibility.systemWide().set("AXFocusedUIElement", AXValue());
    EXPECT_THROW(capture(), FatalFault);
    platform.accessibility.systemWide().fail("AXFocusedUIElement", -1);
    platform.workspace.frontmost.reset();
    EXPECT_THROW(capture(), FatalFault);
}

class SelectionWriterTest : public CaptureFixture {
protected:
    WriteResult write() { return SelectionWriter(platform.accessibility, platform.workspace).write("X"); }
};

TEST_F(SelectionWriterTest, a_text_is_spliced_over_the_selection_in_utf16_units_and_the_caret_put_before_it) {
    const std::tuple<std::string, CFRange, std::string> cases[] = {
        {"one two three", {4, 3}, "one X three"},
        {"🦉 two", {3, 3}, "🦉 X"},
        {"abc", {3, 0}, "abcX"},
        {"abc", {2, 100}, "abX"},
        {"é🦉z", {1, 2}, "éXz"},
        {"", {0, 0}, "X"},
    };
    for (const auto& [value, range, result] : cases) {
        SCOPED_TRACE(value);
        field->set("AXValue", value);
        field->set("AXSelectedTextRange", range);
        platform.accessibility.calls.clear();
        EXPECT_EQ(write(), WriteResult::written);
        EXPECT_EQ(
            platform.accessibility.calls,
            (Texts{
                "system", "copy system AXFocusedUIElement", "copy field AXValue",
                "copy field AXSelectedTextRange", "set field AXValue " + platform::describe(AXValue(result)),
                "set field AXSelectedTextRange " + platform::describe(AXValue(CFRange{range.location, 0}))}));
    }
}

TEST_F(SelectionWriterTest, what_takes_no_change_is_pasted_into) {
    const Texts tail{"set field AXSelectedText \"X\""};
    const auto last = [&](std::size_t count) {
        const Texts& calls = platform.accessibility.calls;
        return Texts(calls.end() - static_cast<std::ptrdiff_t>(count), calls.end());
    };
    EXPECT_EQ(write(), WriteResult::written);
    EXPECT_EQ(last(1), tail) << "it has no text";
    field->set("AXValue", std::string("abc"));
    for (const CFRange range : {CFRange{-1, 1}, CFRange{1, -1}}) {
        field->set("AXSelectedTextRange", range);
        EXPECT_EQ(write(), WriteResult::written);
        EXPECT_EQ(last(1), tail);
    }
    field->set("AXSelectedTextRange", CFRange{1, 1});
    field->writeErrors["AXValue"] = platform::kAXErrorAttributeUnsupported;
    EXPECT_EQ(write(), WriteResult::written);
    EXPECT_EQ(last(3), (Texts{"set field AXValue \"aXc\"", "set field AXSelectedText \"X\"",
                              "set field AXSelectedTextRange {1, 0}"}));
    platform.accessibility.systemWide().fail("AXFocusedUIElement", platform::kAXErrorAPIDisabled);
    EXPECT_EQ(write(), WriteResult::written);
    EXPECT_EQ(last(1), (Texts{"set application 42 AXSelectedText \"X\""})) << "nothing can be asked";
}

TEST_F(SelectionWriterTest, what_was_not_written_is_told_and_stays_selected) {
    const std::pair<platform::AXError, WriteResult> cases[] = {
        {platform::kAXErrorAttributeUnsupported, WriteResult::notEditable},
        {platform::kAXErrorActionUnsupported, WriteResult::terminal},
        {platform::kAXErrorNoValue, WriteResult::secret},
        {platform::kAXErrorCannotComplete, WriteResult::unanswered},
        {platform::kAXErrorFailure, WriteResult::refused},
        {platform::kAXErrorInvalidUIElement, WriteResult::refused},
    };
    field->set("AXValue", std::string("abc"));
    field->set("AXSelectedTextRange", CFRange{1, 1});
    for (const auto& [error, result] : cases) {
        field->writeErrors["AXValue"] = error;
        field->writeErrors["AXSelectedText"] = error;
        platform.accessibility.calls.clear();
        EXPECT_EQ(write(), result);
        const bool isTriedTwice = error == platform::kAXErrorAttributeUnsupported;
        EXPECT_EQ(platform.accessibility.calls.size(), isTriedTwice ? 6U : 5U) << error;
    }
    platform.accessibility.calls.clear();
    platform.accessibility.systemWide().fail("AXFocusedUIElement", platform::kAXErrorCannotComplete);
    EXPECT_EQ(write(), WriteResult::unanswered);
    platform.accessibility.systemWide().fail("AXFocusedUIElement", platform::kAXErrorAPIDisabled);
    platform.workspace.frontmost.reset();
    EXPECT_EQ(write(), WriteResult::noApplication);
    EXPECT_EQ(platform.accessibility.calls.size(), 4U) << "nothing is written";
    platform.accessibility.systemWide().set("AXFocusedUIElement", AXValue());
    EXPECT_THROW(write(), FatalFault);
}

class CopyCaptureTest : public CaptureFixture {
protected:
    CopyCapture capture{platform.workspace, platform.pasteboard, platform.keyboardEvents};
};

TEST_F(CopyCaptureTest, the_keys_of_a_copy_are_pressed_over_an_empty_clipboard) {
    platform.pasteboard.contents = "saved";
    platform.keyboardEvents.onPost = [this](const platform::CGKeyboardEvent&) {
        EXPECT_FALSE(platform.pasteboard.contents);
    };
    EXPECT_EQ(capture.start(), "saved");
    ASSERT_EQ(platform.keyboardEvents.posts.size(), 2U);
    EXPECT_TRUE(platform.keyboardEvents.posts[0].keyDown);
    EXPECT_FALSE(platform.keyboardEvents.posts[1].keyDown);
    for (const auto& post : platform.keyboardEvents.posts) {
        EXPECT_EQ(post.keyCode, 8);
        EXPECT_EQ(post.flags, 0x100000U);
    }
    platform.pasteboard.contents.reset();
    EXPECT_EQ(capture.start(), std::nullopt);
    platform.keyboardEvents.failsToMakeEvents = true;
    EXPECT_THROW(static_cast<void>(capture.start()), FatalFault);
}

TEST_F(CopyCaptureTest, what_the_clipboard_holds_now_is_the_selection_unless_it_held_it_before) {
    const CaptureResult none{.way = CaptureWay::copy, .obstacle = CaptureObstacle::nothingSelected};
    const CaptureResult same{.way = CaptureWay::copy, .obstacle = CaptureObstacle::sameAsClipboard};
    using Text = std::optional<std::string>;
    const std::tuple<Text, Text, CaptureResult> cases[] = {
        {"saved", "fresh", {.way = CaptureWay::copy, .text = "fresh"}},
        {std::nullopt, "fresh", {.way = CaptureWay::copy, .text = "fresh"}},
        {"saved", std::nullopt, none},
        {std::nullopt, std::nullopt, none},
        {"e\xCC\x81", "\xC3\xA9", same},
        {"", std::nullopt, same},
    };
    for (const auto& [saved, fresh, result] : cases) {
        SCOPED_TRACE(fresh.value_or("none"));
        platform.pasteboard.contents = fresh;
        EXPECT_EQ(capture.finish(saved), result);
        EXPECT_TRUE(platform.pasteboard.calls.empty());
    }
}

TEST_F(CopyCaptureTest, the_clipboard_comes_back_with_an_empty_text_where_it_had_none) {
    capture.restore("saved");
    capture.restore(std::nullopt);
    EXPECT_EQ(platform.pasteboard.calls,
              (Texts{"clearContents", "setString saved", "clearContents", "setString "}));
}

TEST_F(CopyCaptureTest, a_terminal_in_front_is_asked_for_its_selection) {
    EXPECT_FALSE(capture.selectionInsteadOfCopy());
    platform.workspace.terminalSelection = "ls";
    EXPECT_EQ(capture.selectionInsteadOfCopy(), (CaptureResult{.way = CaptureWay::primary, .text = "ls"}));
    platform.workspace.terminalSelection = "";
    EXPECT_EQ(capture.selectionInsteadOfCopy()->obstacle, CaptureObstacle::nothingSelected);
}

} // namespace
} // namespace quillmoth
