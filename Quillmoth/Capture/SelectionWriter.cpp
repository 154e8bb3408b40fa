#include "Quillmoth/Capture/SelectionWriter.h"

#include "Foundation/Text.h"
#include "Quillmoth/Capture/FocusedElement.h"

namespace quillmoth {

using platform::AXValue;
using platform::CFRange;
using platform::kAXErrorSuccess;

WriteResult SelectionWriter::write(const std::string& text) {
    platform::AXUIElementRef focused;
    if (readFocusedElement(accessibility_, accessibility_.createSystemWide(), focused) != kAXErrorSuccess)
        return WriteResult::noFocus;
    AXValue value;
    AXValue rangeValue;
    accessibility_.copyAttributeValue(focused, "AXValue", value);
    accessibility_.copyAttributeValue(focused, "AXSelectedTextRange", rangeValue);
    const auto* current = std::get_if<std::string>(&value);
    const auto* range = std::get_if<CFRange>(&rangeValue);
    if (current == nullptr || range == nullptr || range->location < 0 || range->length < 0)
        return WriteResult::notEditable;
    const auto error = accessibility_.setAttributeValue(
        focused, "AXValue",
        replacingUTF16Range(*current, static_cast<std::size_t>(range->location),
                            static_cast<std::size_t>(range->length), text));
    accessibility_.setAttributeValue(focused, "AXSelectedTextRange", CFRange{range->location, 0});
    return error == kAXErrorSuccess ? WriteResult::written : WriteResult::refused;
}

} // namespace quillmoth
