#pragma once

#include "Platform/Accessibility.h"

#include <string>

namespace quillmoth {

namespace platform {
class Workspace;
}

/// What has become of a text that was to replace a selection.
enum class WriteResult {
    /// It is seen to be there, or the application has fetched it.
    written,
    /// No application is in front.
    noApplication,
    /// What is selected cannot be edited; nothing was done.
    notEditable,
    /// A password field has the focus, or a terminal, which would run the lines; nothing was done.
    secret,
    terminal,
    /// The application was asked to, and has not taken it.
    refused,
    /// It has not answered in time, and may still take it.
    unanswered,
};

/// Writes a text over the selection of the application in front: as a change of the focused element, or else
/// as a paste. Main thread.
class SelectionWriter {
public:
    /// The services outlive the object.
    SelectionWriter(platform::Accessibility& accessibility, platform::Workspace& workspace)
        : accessibility_(accessibility), workspace_(workspace) {}

    /// Puts the caret in front of the new text, where the element has one. May wait for the application.
    WriteResult write(const std::string& text);

private:
    [[nodiscard]] platform::AXError writeTo(const platform::AXUIElementRef& focused, const std::string& text);

    platform::Accessibility& accessibility_;
    platform::Workspace& workspace_;
};

} // namespace quillmoth
