#pragma once

#include "Platform/Pasteboard.h"

namespace quillmoth::platform {

/// The desktop's clipboard (the CLIPBOARD selection of the X Window System), as plain text. Main thread, with
/// a QGuiApplication. What is set here is offered for as long as the process lives.
class QtPasteboard final : public Pasteboard {
public:
    /// Asks the application that owns the clipboard, and so may wait for it.
    [[nodiscard]] std::optional<std::string> string() const override;

    /// Takes the clipboard over, with nothing on it. Waits for nobody.
    void clearContents() override;

    void setString(const std::string& text) override;
};

} // namespace quillmoth::platform
