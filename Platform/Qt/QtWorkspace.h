#pragma once

#include "Platform/Workspace.h"

#include <functional>
#include <vector>

namespace quillmoth::platform {

class MainQueue;

/// The desktop session as Qt reaches it. Main thread.
class QtWorkspace final : public Workspace {
public:
    using FrontProcess = std::function<std::optional<std::int64_t>()>;
    using TerminalSelection = std::function<std::optional<std::string>()>;
    using URLHandler = std::function<void(const std::vector<std::string>& urls)>;

    /// `frontProcess` and `terminalSelection` answer for the window system in use; empty: no application, and
    /// no terminal, is ever in front.
    QtWorkspace(MainQueue& mainQueue, FrontProcess frontProcess, TerminalSelection terminalSelection = {});

    /// Receives the URLs of the program's own scheme, in a later turn than openURL. Until it is set those
    /// URLs cannot be opened.
    void setOwnURLHandler(URLHandler handler);

    [[nodiscard]] std::optional<std::int64_t> frontmostApplicationProcessIdentifier() override;

    [[nodiscard]] std::optional<std::string> selectionInFrontTerminal() override;

    /// Other URLs go to the desktop's own opener, which is started and not waited for.
    bool openURL(const std::string& url) override;

private:
    MainQueue& mainQueue_;
    FrontProcess frontProcess_;
    TerminalSelection terminalSelection_;
    URLHandler ownURLHandler_;
};

} // namespace quillmoth::platform
