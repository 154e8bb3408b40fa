#pragma once

#include "Quillmoth/Capture/CaptureResult.h"

namespace quillmoth {

namespace platform {
class Workspace;
}

/// Reads the text that is selected in the application in front, on the first way that has one: what the
/// focused element tells, what is gathered from it, and what the application offers as PRIMARY, where
/// accessibility does not say for certain that nothing is selected. Main thread.
class SelectionCapture {
public:
    /// The services outlive the object.
    SelectionCapture(platform::Accessibility& accessibility, platform::Workspace& workspace)
        : accessibility_(accessibility), workspace_(workspace) {}

    /// Wakes the application in front and asks its focused element, which may make it wait. No application in
    /// front is a fatal fault.
    [[nodiscard]] CaptureResult capture();

private:
    [[nodiscard]] CaptureResult readFocus(const platform::AXUIElementRef& systemWide);
    /// `failed` where PRIMARY has nothing.
    [[nodiscard]] CaptureResult orPrimary(CaptureResult failed);
    [[nodiscard]] std::string markedText(const platform::AXUIElementRef& focused);

    platform::Accessibility& accessibility_;
    platform::Workspace& workspace_;
};

} // namespace quillmoth
