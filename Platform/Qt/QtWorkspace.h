#pragma once

#include "Platform/Workspace.h"

#include <functional>
#include <vector>

namespace quillmoth::platform {

class MainQueue;

/// The desktop session as Qt reaches it. Main thread.
class QtWorkspace final : public Workspace {
public:
    /// What the window system in use knows of the application in front; all may be left empty.
    struct Front {
        std::function<std::optional<std::int64_t>()> process = {};
        std::function<std::string()> name = {};
        std::function<std::optional<std::string>()> primarySelection = {};
        std::function<std::optional<std::string>()> selectionInsteadOfCopy = {};
    };

    using URLHandler = std::function<void(const std::vector<std::string>& urls)>;

    QtWorkspace(MainQueue& mainQueue, Front front);

    /// Receives the URLs of the program's own scheme, in a later turn than openURL. Until it is set those
    /// URLs cannot be opened.
    void setOwnURLHandler(URLHandler handler);

    [[nodiscard]] std::optional<std::int64_t> frontmostApplicationProcessIdentifier() override;

    [[nodiscard]] std::string frontmostApplicationName() override;

    [[nodiscard]] std::optional<std::string> frontmostPrimarySelection() override;

    [[nodiscard]] std::optional<std::string> selectionInsteadOfCopy() override;

    /// Other URLs go to the desktop's own opener, which is started and not waited for.
    bool openURL(const std::string& url) override;

private:
    MainQueue& mainQueue_;
    Front front_;
    URLHandler ownURLHandler_;
};

} // namespace quillmoth::platform
