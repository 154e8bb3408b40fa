#pragma once

#include "Platform/Linux/X11/Keys/X11KeyboardEvents.h"
#include "Platform/Linux/X11/Selection/X11Pasteboard.h"
#include "Platform/Linux/X11/X11FrontApplication.h"

#include <chrono>
#include <functional>
#include <string>

namespace quillmoth::platform {

/// Has the application in front paste a text over what is selected there, with the keys that it has for this.
/// Main thread.
class X11SelectionPaste {
public:
    /// All outlive the object. `hasOtherFocus` as for terminalInFront.
    X11SelectionPaste(X11FrontApplication& front, X11KeyboardEvents& keys, X11Pasteboard& pasteboard,
                      std::function<bool(std::int64_t process)> hasOtherFocus)
        : front_(front), keys_(keys), pasteboard_(pasteboard), hasOtherFocus_(std::move(hasOtherFocus)) {}

    /// An empty text deletes what is selected, of which a fetch tells nothing: it counts as fetched. Waits
    /// for the application until the deadline.
    [[nodiscard]] PasteOutcome paste(const std::string& text, std::chrono::steady_clock::time_point deadline);

private:
    [[nodiscard]] X11Pasteboard::PasteKeys keysFor(PasteHabit habit);

    X11FrontApplication& front_;
    X11KeyboardEvents& keys_;
    X11Pasteboard& pasteboard_;
    std::function<bool(std::int64_t process)> hasOtherFocus_;
};

} // namespace quillmoth::platform
