#include "Quillmoth/Capture/SelectionWriter.h"

#include "Foundation/Text.h"
#include "Platform/Workspace.h"
#include "Quillmoth/Capture/FocusedElement.h"

#include <optional>

namespace quillmoth {

using platform::AXError;
using platform::AXUIElementRef;
using platform::AXValue;
using platform::CFRange;
using platform::kAXErrorSuccess;

namespace {

/// What a field holds, and what is selected in it.
struct FieldText {
    std::string value;
    CFRange selected;
};

std::optional<FieldText> textOf(platform::Accessibility& accessibility, const AXUIElementRef& focused) {
    AXValue value;
    AXValue rangeValue;
    accessibility.copyAttributeValue(focused, "AXValue", value);
    accessibility.copyAttributeValue(focused, "AXSelectedTextRange", rangeValue);
    const auto* text = std::get_if<std::string>(&value);
    const auto* range = std::get_if<CFRange>(&rangeValue);
    if (text == nullptr || range == nullptr || range->location < 0 || range->length < 0)
        return std::nullopt;
    return FieldText{.value = *text, .selected = *range};
}

WriteResult resultOf(AXError error) {
    switch (error) {
    case kAXErrorSuccess:
        return WriteResult::written;
    case platform::kAXErrorAttributeUnsupported:
        return WriteResult::notEditable;
    case platform::kAXErrorNoValue:
        return WriteResult::secret;
    case platform::kAXErrorActionUnsupported:
        return WriteResult::terminal;
    case platform::kAXErrorCannotComplete:
        return WriteResult::unanswered;
    default:
        return WriteResult::refused;
    }
}

} // namespace

WriteResult SelectionWriter::write(const std::string& text) {
    AXUIElementRef focused;
    const AXError error = readFocusedElement(accessibility_, accessibility_.createSystemWide(), focused);
    if (error == kAXErrorSuccess)
        return resultOf(writeTo(focused, text));
    if (error == platform::kAXErrorCannotComplete)
        return WriteResult::unanswered;
    // Where nothing can be asked, the application has the keys all the same.
    const auto process = workspace_.frontmostApplicationProcessIdentifier();
    if (!process)
        return WriteResult::noApplication;
    return resultOf(
        accessibility_.setAttributeValue(accessibility_.createApplication(*process), "AXSelectedText", text));
}

AXError SelectionWriter::writeTo(const AXUIElementRef& focused, const std::string& text) {
    const auto field = textOf(accessibility_, focused);
    AXError error = platform::kAXErrorAttributeUnsupported;
    if (field) {
        const auto location = static_cast<std::size_t>(field->selected.location);
        const auto length = static_cast<std::size_t>(field->selected.length);
        error = accessibility_.setAttributeValue(focused, "AXValue",
                                                 replacingUTF16Range(field->value, location, length, text));
    }
    if (error == platform::kAXErrorAttributeUnsupported)
        error = accessibility_.setAttributeValue(focused, "AXSelectedText", text);
    // What has not been replaced stays selected.
    if (field && error == kAXErrorSuccess)
        accessibility_.setAttributeValue(focused, "AXSelectedTextRange",
                                         CFRange{field->selected.location, 0});
    return error;
}

} // namespace quillmoth
