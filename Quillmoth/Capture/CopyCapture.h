#pragma once

#include "Platform/MainQueue.h"
#include "Quillmoth/Capture/CaptureResult.h"

#include <optional>
#include <string>

namespace quillmoth {

namespace platform {
class KeyboardEvents;
class Pasteboard;
class Workspace;
} // namespace platform

/// Gets the selection by way of a synthetic copy, for applications that do not tell it otherwise. Keeps
/// nothing between its steps: who takes them keeps the clipboard's former text. Main thread.
class CopyCapture {
public:
    /// From `start` to `finish`.
    static constexpr platform::MainQueue::Seconds kWait{0.2};

    /// The services outlive the object.
    CopyCapture(platform::Workspace& workspace, platform::Pasteboard& pasteboard,
                platform::KeyboardEvents& keyboardEvents)
        : workspace_(workspace), pasteboard_(pasteboard), keyboardEvents_(keyboardEvents) {}

    /// What is selected where the keys of a copy mean something else: in a terminal they interrupt what runs.
    /// None where they copy.
    [[nodiscard]] std::optional<CaptureResult> selectionInsteadOfCopy();

    /// Whether keys can be sent to other programs.
    [[nodiscard]] bool canCopy() const;

    /// Empties the clipboard and presses the keys of a copy. The text that the clipboard held; none where it
    /// held no text. A fatal fault where canCopy() is false.
    [[nodiscard]] std::optional<std::string> start();

    /// What has been copied. `saved` is what `start` has given.
    [[nodiscard]] CaptureResult finish(const std::optional<std::string>& saved);

    /// Puts the former text back. Needless after CaptureObstacle::sameAsClipboard.
    void restore(const std::optional<std::string>& saved);

private:
    platform::Workspace& workspace_;
    platform::Pasteboard& pasteboard_;
    platform::KeyboardEvents& keyboardEvents_;
};

} // namespace quillmoth
