#include "Quillmoth/Capture/SelectionCapture.h"

#include "Foundation/FatalError.h"
#include "Platform/Workspace.h"
#include "Quillmoth/Capture/FocusedElement.h"

#include <utility>

namespace quillmoth {

using platform::AXUIElementRef;
using platform::AXValue;
using platform::kAXErrorSuccess;

namespace {

std::string textOrEmpty(const AXValue& value) {
    const auto* text = std::get_if<std::string>(&value);
    return text ? *text : std::string();
}

} // namespace

CaptureResult SelectionCapture::capture() {
    const bool isPermitted = accessibility_.isProcessTrusted();
    const AXUIElementRef systemWide = accessibility_.createSystemWide();
    const auto process = workspace_.frontmostApplicationProcessIdentifier();
    if (!process)
        fatalError("There is no application in front");
    // Some applications tell of their contents only when they have been asked to.
    const AXUIElementRef application = accessibility_.createApplication(*process);
    accessibility_.setAttributeValue(application, "AXManualAccessibility", true);
    accessibility_.setAttributeValue(application, "AXEnhancedUserInterface", true);
    CaptureResult result = readFocus(systemWide);
    result.isPermitted = isPermitted;
    return result;
}

CaptureResult SelectionCapture::readFocus(const AXUIElementRef& systemWide) {
    AXUIElementRef focused;
    if (const auto error = readFocusedElement(accessibility_, systemWide, focused); error != kAXErrorSuccess)
        return orPrimary({.obstacle = CaptureObstacle::noFocus, .error = error});
    AXValue selected;
    if (accessibility_.copyAttributeValue(focused, "AXSelectedText", selected) == kAXErrorSuccess) {
        CaptureResult result = captured(CaptureWay::selectedText, textOrEmpty(selected));
        return std::holds_alternative<std::monostate>(selected) ? orPrimary(std::move(result)) : result;
    }
    return orPrimary(captured(CaptureWay::markerRange, markedText(focused), CaptureObstacle::noText));
}

CaptureResult SelectionCapture::orPrimary(CaptureResult failed) {
    if (!failed.obstacle)
        return failed;
    CaptureResult result =
        captured(CaptureWay::primary, workspace_.frontmostPrimarySelection().value_or(std::string()));
    if (result.obstacle)
        return failed;
    result.error = failed.error;
    return result;
}

std::string SelectionCapture::markedText(const AXUIElementRef& focused) {
    AXValue range;
    accessibility_.copyAttributeValue(focused, "AXSelectedTextMarkerRange", range);
    if (std::holds_alternative<std::monostate>(range))
        return {};
    AXValue attributed;
    accessibility_.copyParameterizedAttributeValue(focused, "AXAttributedStringForTextMarkerRange", range,
                                                   attributed);
    return textOrEmpty(attributed);
}

} // namespace quillmoth
