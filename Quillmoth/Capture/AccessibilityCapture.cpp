// The text selected in the front application becomes the context; an answer goes back over it.

#include "Foundation/FatalError.h"
#include "Foundation/Log.h"
#include "Foundation/Text.h"
#include "Platform/UserDefaults.h"
#include "Platform/Workspace.h"
#include "Quillmoth/Assistant/CaptureTexts.h"
#include "Quillmoth/Assistant/DataModel.h"

#include <algorithm>

namespace quillmoth {

using platform::AXUIElementRef;
using platform::AXValue;
using platform::CFRange;
using platform::kAXErrorSuccess;

namespace {

/// The element under a focus read that succeeded; none at all is a fault of the system.
AXUIElementRef focusedElement(const AXValue& value) {
    const auto* element = std::get_if<AXUIElementRef>(&value);
    if (element == nullptr || !*element)
        fatalError("The focused element was read without an error, and there is none");
    return *element;
}

bool hasValue(const AXValue& value) {
    return !std::holds_alternative<std::monostate>(value);
}

std::string textOrEmpty(const AXValue& value) {
    const auto* text = std::get_if<std::string>(&value);
    return text ? *text : std::string();
}

} // namespace

void DataModel::captureContext() {
    _openHistory = false;
    _status = std::string();
    if (platform_.userDefaults.boolean("useCopyHack", false)) {
        copyCapture();
        return;
    }
    platform::Accessibility& accessibility = platform_.accessibility;
    if (!accessibility.isProcessTrusted())
        _error = std::string(kPermissionMessage);
    const AXUIElementRef systemWide = accessibility.createSystemWide();
    const auto process = platform_.workspace.frontmostApplicationProcessIdentifier();
    if (!process)
        fatalError("There is no application in front");
    const AXUIElementRef application = accessibility.createApplication(*process);
    accessibility.setAttributeValue(application, "AXManualAccessibility", true);
    accessibility.setAttributeValue(application, "AXEnhancedUserInterface", true);

    AXValue focusedValue;
    const auto focusError = accessibility.copyAttributeValue(systemWide, "AXFocusedUIElement", focusedValue);
    if (focusError != kAXErrorSuccess) {
        logLine("Error: " + std::to_string(focusError));
        return;
    }
    const AXUIElementRef focused = focusedElement(focusedValue);
    AXValue selected;
    if (accessibility.copyAttributeValue(focused, "AXSelectedText", selected) == kAXErrorSuccess)
        selectedTextRead(textOrEmpty(selected));
    else
        readMarkedText(focused);
}

void DataModel::selectedTextRead(const std::string& text) {
    const bool found = !text.empty();
    _status = std::string(found ? kContextFound : kNoSelection);
    _selectedValue = text;
    _isContext = found;
    refreshListOfClass(found);
}

/// For elements without plain selected text, such as web content.
void DataModel::readMarkedText(const AXUIElementRef& focused) {
    _status = std::string(kNoFocusFound);
    _isContext = false;
    refreshNonContextList();

    AXValue range;
    platform_.accessibility.copyAttributeValue(focused, "AXSelectedTextMarkerRange", range);
    if (!hasValue(range))
        return;
    AXValue attributed;
    platform_.accessibility.copyParameterizedAttributeValue(focused, "AXAttributedStringForTextMarkerRange",
                                                            range, attributed);
    const std::string text = textOrEmpty(attributed);
    if (text.empty())
        return;
    _selectedValue = text;
    _status = std::string(kContextFound);
    _isContext = true;
    refreshContextList();
}

void DataModel::replaceSelection(const std::string& text) const {
    platform::Accessibility& accessibility = platform_.accessibility;
    const AXUIElementRef systemWide = accessibility.createSystemWide();
    AXValue focusedValue;
    if (accessibility.copyAttributeValue(systemWide, "AXFocusedUIElement", focusedValue) != kAXErrorSuccess)
        return;
    const AXUIElementRef focused = focusedElement(focusedValue);
    AXValue value;
    AXValue rangeValue;
    accessibility.copyAttributeValue(focused, "AXValue", value);
    accessibility.copyAttributeValue(focused, "AXSelectedTextRange", rangeValue);
    const auto* current = std::get_if<std::string>(&value);
    const auto* range = std::get_if<CFRange>(&rangeValue);
    if (current == nullptr || range == nullptr || range->location < 0 || range->length < 0)
        return;
    accessibility.setAttributeValue(focused, "AXValue",
                                    replacingUTF16Range(*current, static_cast<std::size_t>(range->location),
                                                        static_cast<std::size_t>(range->length), text));
    accessibility.setAttributeValue(focused, "AXSelectedTextRange", CFRange{range->location, 0});
}

} // namespace quillmoth
