#pragma once

#include "Platform/KeyboardEvents.h"
#include "Platform/Linux/Gnome/GnomeExtension.h"
#include "Platform/Linux/Gnome/MutterKeys.h"

#include <functional>
#include <vector>

namespace quillmoth::platform {

/// Synthetic keys in GNOME: by the extension, or else by a remote desktop's session. Command is Control.
/// Strokes for a copy go by the extension alone, which sees to it that what the user still holds of the hot
/// key does not get into them. Main thread.
class GnomeKeyboardEvents final : public KeyboardEvents {
public:
    /// `extension` outlives the object. `keycodeOf` finds the key, by the kernel's table plus 8, that writes
    /// a keysym's name.
    GnomeKeyboardEvents(GnomeExtension& extension,
                        std::function<std::optional<std::uint32_t>(const std::string& name)> keycodeOf);

    /// As long as `isForbidden` says so no key with a flag is sent: a copy would destroy what cannot be
    /// brought back.
    void setVeto(std::function<bool()> isForbidden) { isForbidden_ = std::move(isForbidden); }

    std::optional<CGKeyboardEvent> createKeyboardEvent(std::uint16_t keyCode, bool keyDown) override;

    /// With the release the whole stroke is sent.
    void post(const CGKeyboardEvent& event) override;

    /// Whether there is a way for the two below.
    [[nodiscard]] bool canPaste() const;
    /// Control with the key that writes a "v". False where that cannot be sent. Control stays down until the
    /// release: the compositor has keys go by way of an input method, and the modifiers past it, so that one
    /// let go of too early would leave the letter alone.
    bool pressPaste();
    void releasePaste();
    bool postDelete();

private:
    [[nodiscard]] bool send(const std::vector<KeyStep>& steps);

    GnomeExtension& extension_;
    std::function<std::optional<std::uint32_t>(const std::string& name)> keycodeOf_;
    std::function<bool()> isForbidden_;
    bool hasMutter_;
    /// While keys are held down by it.
    MutterKeys mutter_;
};

} // namespace quillmoth::platform
