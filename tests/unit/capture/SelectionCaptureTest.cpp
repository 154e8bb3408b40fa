#include "Quillmoth/Capture/SelectionCapture.h"

#include "tests/unit/capture/CaptureFixture.h"

namespace quillmoth {

namespace {

using platform::AXValue;

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
    EXPECT_THROW(capture(), std::runtime_error);
    platform.accessibility.systemWide().fail("AXFocusedUIElement", -1);
    platform.workspace.frontmost.reset();
    EXPECT_THROW(capture(), std::runtime_error);
}

} // namespace

} // namespace quillmoth
