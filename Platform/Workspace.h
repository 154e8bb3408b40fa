#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace quillmoth::platform {

/// The desktop session around the program. Main thread.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// The process of the application that is in front; never this program's own. None where there is none.
    [[nodiscard]] virtual std::optional<std::int64_t> frontmostApplicationProcessIdentifier() = 0;

    /// The text that is selected in the terminal in front, empty where there is none; the key that copies
    /// elsewhere would end what runs there. None where something else than a terminal is in front.
    [[nodiscard]] virtual std::optional<std::string> selectionInFrontTerminal() = 0;

    /// Opens a web page in the browser, or a URL of the program's own scheme in the program itself. True when
    /// the system has taken it.
    virtual bool openURL(const std::string& url) = 0;
};

} // namespace quillmoth::platform
