#include "Quillmoth/Capture/FocusedElement.h"

#include "Foundation/FatalError.h"

namespace quillmoth {

platform::AXError readFocusedElement(platform::Accessibility& accessibility,
                                     const platform::AXUIElementRef& systemWide,
                                     platform::AXUIElementRef& focused) {
    platform::AXValue value;
    const auto error = accessibility.copyAttributeValue(systemWide, "AXFocusedUIElement", value);
    if (error != platform::kAXErrorSuccess)
        return error;
    const auto* element = std::get_if<platform::AXUIElementRef>(&value);
    if (element == nullptr || !*element)
        fatalError("The focused element was read without an error, and there is none");
    focused = *element;
    return error;
}

} // namespace quillmoth
