#pragma once

#include "Platform/Accessibility.h"

#include <string>

namespace quillmoth {

/// What has become of a text that was to replace a selection.
enum class WriteResult {
    /// The element has taken it.
    written,
    /// The focused element could not be read.
    noFocus,
    /// The focused element has no text, or no selection in it, that could be replaced.
    notEditable,
    /// The element was asked to, and has not taken it.
    refused,
};

/// Writes a text over the selection of the application in front. Main thread.
class SelectionWriter {
public:
    /// The service outlives the object.
    explicit SelectionWriter(platform::Accessibility& accessibility) : accessibility_(accessibility) {}

    /// Puts the caret in front of the new text. May wait for the application.
    WriteResult write(const std::string& text);

private:
    platform::Accessibility& accessibility_;
};

} // namespace quillmoth
