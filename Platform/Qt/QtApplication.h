#pragma once

#include "Platform/Application.h"

#include <functional>

namespace quillmoth::platform {

/// The program as an application of the desktop. Main thread; made after the QApplication. Closing every
/// window does not end the program.
class QtApplication final : public Application {
public:
    QtApplication();

    /// What showSettingsWindow does. Until it is set that call does nothing.
    void setSettingsHandler(std::function<void()> handler);

    /// Nothing to do: no desktop here opens a window by itself.
    void closeFirstWindow() override {}

    /// The ordinary windows that are on screen; the floating panel never takes the activation.
    void activateIgnoringOtherApps() override;

    void showSettingsWindow() override;

    /// Does not ask windows whether they want to close.
    void terminate() override;

private:
    std::function<void()> settingsHandler_;
};

} // namespace quillmoth::platform
