#pragma once

#include "Foundation/Result.h"
#include "Platform/DesktopBackEnd.h"
#include "Platform/Linux/Sway/SwayConnection.h"
#include "Platform/Linux/Sway/SwayFront.h"
#include "Platform/Linux/Sway/SwayHotKeyCenter.h"
#include "Platform/Linux/Unavailable/UnavailableServices.h"
#include "Platform/Linux/Wayland/LayerStage.h"
#include "Platform/Linux/Wayland/WaylandConnection.h"
#include "Platform/Linux/Wayland/WaylandKeyboardEvents.h"
#include "Platform/Linux/Wayland/WaylandKeyboardLayout.h"
#include "Platform/Linux/Wayland/WaylandPasteboard.h"

#include <memory>

namespace quillmoth::platform {

/// A session of sway: its own socket for keys and windows, and the protocols of Wayland for the rest.
class SwayBackEnd final : public DesktopBackEnd {
public:
    /// What the toolkit has serves where the compositor offers nothing better; it outlives the object.
    struct Toolkit {
        Pasteboard& pasteboard;
        PanelFocus& panelFocus;
    };

    /// Fails where the toolkit does not run on Wayland, or the compositor has no such socket.
    [[nodiscard]] static Result<std::unique_ptr<SwayBackEnd>> create(const Toolkit& toolkit);

    ~SwayBackEnd() override;

    HotKeyCenter& hotKeyCenter() override { return hotKeys_; }

    KeyboardLayout& keyboardLayout() override { return layout_; }

    KeyboardEvents& keyboardEvents() override {
        return keyboardEvents_ ? static_cast<KeyboardEvents&>(*keyboardEvents_) : noKeyboardEvents_;
    }

    PanelFocus& panelFocus() override {
        return stage_ ? static_cast<PanelFocus&>(*stage_) : toolkit_.panelFocus;
    }

    Pasteboard& pasteboard() override {
        return pasteboard_ ? static_cast<Pasteboard&>(*pasteboard_) : toolkit_.pasteboard;
    }

    std::optional<std::int64_t> frontProcess() override;

    std::string frontName() override { return front_.name(); }

    /// The protocol names no owner: that counts which was in front when it changed.
    std::optional<std::string> primarySelection() override;

    std::optional<std::string> selectionInsteadOfCopy(const OtherFocus& hasOtherFocus) override;

    PasteOutcome paste(const std::string& text, std::chrono::steady_clock::time_point deadline,
                       const OtherFocus& hasOtherFocus) override;

    void withdrawPaste() override;

    /// Whether keys can be sent to other programs.
    [[nodiscard]] bool sendsKeys() const { return keyboardEvents_ && pasteboard_; }

    std::chrono::milliseconds focusReturnTime() const override { return std::chrono::milliseconds(300); }

    bool isCompositing() const override { return true; }

    Subscription onCompositingChange(std::function<void()>) override { return {}; }

private:
    SwayBackEnd(std::unique_ptr<SwayConnection> sway, std::unique_ptr<WaylandConnection> wayland,
                const Toolkit& toolkit);
    void notePrimary();

    Toolkit toolkit_;
    std::unique_ptr<SwayConnection> sway_;
    std::unique_ptr<WaylandConnection> wayland_;
    /// Null where the compositor does not offer them.
    std::unique_ptr<WaylandPasteboard> pasteboard_;
    WaylandKeyboardLayout layout_;
    std::unique_ptr<WaylandKeyboardEvents> keyboardEvents_;
    SwayFront front_;
    std::optional<std::int64_t> primaryProcess_;
    SwayHotKeyCenter hotKeys_;
    UnavailableKeyboardEvents noKeyboardEvents_;
    /// Null where the compositor has no layers.
    std::unique_ptr<LayerStage> stage_;
    Subscription frontChanges_;
};

} // namespace quillmoth::platform
