#pragma once

#include "Platform/Linux/AtSpi/Operation.h"

#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth::platform {

/// Remembers which object of each application was focused last and which window was activated last, as the
/// applications' events tell. What it says may be out of date: not every toolkit tells of a focus that is
/// lost. The accessibility thread.
class FocusTracker {
public:
    /// `event` is interface and member of a signal, joined by a dot.
    void onSignal(const std::string& sender, const std::string& path, std::string_view event,
                  GVariant* parameters);

    /// The connections that have told of a focus, the latest first.
    [[nodiscard]] std::vector<std::string> applications() const;

    /// The objects of one of them that were told last, the latest first.
    [[nodiscard]] std::vector<ObjectReference> focusedObjects(const std::string& name) const;

    /// The window that the application `name` activated last; a null reference where none is known.
    [[nodiscard]] ObjectReference activeWindow(const std::string& name) const;

    void forget(const std::string& name);

private:
    struct Focused {
        std::deque<std::string> paths;
        std::uint64_t when = 0;
    };

    std::map<std::string, Focused> focused_;
    std::map<std::string, std::string> activeWindows_;
    std::uint64_t now_ = 0;
};

} // namespace quillmoth::platform
