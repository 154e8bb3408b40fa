#pragma once

#include "Platform/Pasteboard.h"

#include <QMetaObject>

namespace quillmoth::platform {

/// The desktop's clipboard (the CLIPBOARD selection of the X Window System), as plain text. Main thread, with
/// a QGuiApplication. What is set here is offered for as long as the process lives. Wayland lets a
/// program set it only while that has the keyboard: what is set before is set again as soon as it has.
class QtPasteboard final : public Pasteboard {
public:
    QtPasteboard() = default;
    ~QtPasteboard() override;
    QtPasteboard(const QtPasteboard&) = delete;
    QtPasteboard& operator=(const QtPasteboard&) = delete;

    /// Asks the application that owns the clipboard, and so may wait for it.
    [[nodiscard]] std::optional<std::string> string() const override;

    /// Takes the clipboard over, with nothing on it. Waits for nobody.
    void clearContents() override;

    void setString(const std::string& text) override;

private:
    /// What another program has not been able to see so far; none where all is as it was set.
    std::optional<std::string> waiting_;
    QMetaObject::Connection focus_;
};

} // namespace quillmoth::platform
