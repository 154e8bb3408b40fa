#pragma once

#include "Platform/Linux/Sway/SwayConnection.h"
#include "Platform/Linux/Sway/SwayTree.h"

#include <functional>

namespace quillmoth::platform {

/// The application in front, as the compositor tells it. A window of this program counts as standing before
/// the one that had the focus until then. Main thread.
class SwayFront {
public:
    /// `connection` outlives the object.
    explicit SwayFront(SwayConnection& connection);

    /// Never of this process; none where no window has the focus.
    [[nodiscard]] std::optional<SwayWindow> window();

    /// What its users call it, such as "Kate"; empty where that is not known.
    [[nodiscard]] std::string name();

    /// Whether it is a terminal. `hasOtherFocus` as for isTerminalProcess.
    [[nodiscard]] bool isTerminal(const std::function<bool(std::int64_t process)>& hasOtherFocus);

    /// Called when another window, or an empty workspace, has got the focus.
    Subscription onChange(std::function<void()> subscriber) {
        return changed_.subscribe(std::move(subscriber));
    }

private:
    void handle(SwayConnection::Event kind, const nlohmann::json& event);

    SwayConnection& connection_;
    std::optional<SwayWindow> last_;
    Signal<> changed_;
    Subscription events_;
};

} // namespace quillmoth::platform
