#pragma once

#include "Platform/DesktopBackEnd.h"
#include "Platform/Linux/Shared/PasteHabits.h"
#include "Platform/Linux/Unavailable/UnavailableServices.h"
#include "Platform/Linux/Wayland/LayerStage.h"
#include "Platform/Linux/Wayland/ShortcutsInhibitor.h"
#include "Platform/Linux/Wayland/WaylandConnection.h"
#include "Platform/Linux/Wayland/WaylandKeyboardEvents.h"
#include "Platform/Linux/Wayland/WaylandKeyboardLayout.h"
#include "Platform/Linux/Wayland/WaylandPasteboard.h"

#include <memory>

namespace quillmoth::platform {

/// What the sessions of compositors with layers have in common: the panel, the clipboard and the synthetic
/// keys by protocols of Wayland. A subclass knows the program in front and the hot keys.
class WaylandBackEnd : public DesktopBackEnd {
public:
    /// What the toolkit has serves where the compositor offers nothing better; it outlives the object.
    struct Toolkit {
        Pasteboard& pasteboard;
        PanelFocus& panelFocus;
    };

    ~WaylandBackEnd() override;

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

    /// The protocol names no owner: that counts which was in front when it changed.
    std::optional<std::string> primarySelection() override;

    std::optional<std::string> selectionInsteadOfCopy(const OtherFocus& hasOtherFocus) override;

    PasteOutcome paste(const std::string& text, std::chrono::steady_clock::time_point deadline,
                       const OtherFocus& hasOtherFocus) override;

    void withdrawPaste() override;

    Subscription inhibitShortcuts(PanelFocus::WindowIdentifier window) override {
        return shortcuts_ ? shortcuts_->inhibit(window) : Subscription();
    }

    /// Whether keys can be sent to other programs.
    [[nodiscard]] bool sendsKeys() const {
        return pasteboard_ && keyboardEvents_ && keyboardEvents_->canSend();
    }

    [[nodiscard]] bool hasLayers() const { return stage_ != nullptr; }

    std::chrono::milliseconds focusReturnTime() const override { return std::chrono::milliseconds(300); }

    bool isCompositing() const override { return true; }

    Subscription onCompositingChange(std::function<void()>) override { return {}; }

protected:
    struct Compositor {
        std::unique_ptr<WaylandConnection> connection;
        /// Null is made where the compositor takes no keys.
        std::function<std::unique_ptr<WaylandKeyboardEvents>(WaylandConnection&,
                                                             const WaylandKeyboardLayout&)>
            makeKeyboardEvents;
        /// The name of the output in use. Called later than the constructor.
        std::function<std::string()> focusedOutput;
    };

    WaylandBackEnd(Compositor compositor, const Toolkit& toolkit);

    [[nodiscard]] virtual bool isFrontTerminal(const OtherFocus& hasOtherFocus) = 0;

    [[nodiscard]] const WaylandKeyboardLayout& layout() const { return layout_; }

    /// Another application's window has got the focus of the desktop.
    void frontChanged();

    /// As LayerStage::setYieldHandler.
    void setYieldHandler(std::function<void()> handler);

private:
    [[nodiscard]] PasteHabit pasteHabit(const OtherFocus& hasOtherFocus);
    void notePrimary();
    [[nodiscard]] WaylandPasteboard::PasteKeys keysFor(PasteHabit habit);

    Toolkit toolkit_;
    std::unique_ptr<WaylandConnection> wayland_;
    /// Null where the compositor does not offer them.
    std::unique_ptr<WaylandPasteboard> pasteboard_;
    WaylandKeyboardLayout layout_;
    std::unique_ptr<WaylandKeyboardEvents> keyboardEvents_;
    std::optional<std::int64_t> primaryProcess_;
    UnavailableKeyboardEvents noKeyboardEvents_;
    /// Null where the compositor has no layers.
    std::unique_ptr<LayerStage> stage_;
    /// Null where the compositor leaves its own key combinations to nobody.
    std::unique_ptr<ShortcutsInhibitor> shortcuts_;
};

} // namespace quillmoth::platform
