#pragma once

#include <optional>
#include <string>

namespace quillmoth::platform {

/// The clipboard, as plain text. Main thread.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    /// The text on the clipboard; none where it holds no text.
    [[nodiscard]] virtual std::optional<std::string> string() const = 0;

    virtual void clearContents() = 0;

    virtual void setString(const std::string& text) = 0;
};

} // namespace quillmoth::platform
