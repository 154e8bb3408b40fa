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

    /// What the users of the application in front call it, such as "Kate"; empty where that is not known.
    [[nodiscard]] virtual std::string frontmostApplicationName() = 0;

    /// The text that the application in front offers for pasting with the middle mouse button: what was
    /// selected there last. None where another application's was selected later.
    [[nodiscard]] virtual std::optional<std::string> frontmostPrimarySelection() = 0;

    /// The text that is selected in an application in front to which the usual key of a copy means something
    /// else, such as a terminal, where it ends what runs; empty where nothing is selected. None where that
    /// key copies.
    [[nodiscard]] virtual std::optional<std::string> selectionInsteadOfCopy() = 0;

    /// Opens a web page in the browser, or a URL of the program's own scheme in the program itself. True when
    /// the system has taken it.
    virtual bool openURL(const std::string& url) = 0;
};

} // namespace quillmoth::platform
