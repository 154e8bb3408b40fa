#pragma once

#include <string>

namespace quillmoth::platform {

/// The running program as the desktop sees it. Main thread.
class Application {
public:
    virtual ~Application() = default;

    /// Closes the window that the desktop opened by itself at the start, if there is one.
    virtual void closeFirstWindow() = 0;

    /// Brings the program's windows to the front.
    virtual void activateIgnoringOtherApps() = 0;

    virtual void showSettingsWindow() = 0;

    /// Ends the process at the end of this turn.
    virtual void terminate() = 0;
};

} // namespace quillmoth::platform
