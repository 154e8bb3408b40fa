#pragma once

#include "Foundation/Result.h"
#include "Platform/DesktopBackEnd.h"
#include "Platform/Linux/Gnome/GnomeFront.h"
#include "Platform/Linux/Gnome/GnomeHotKeyCenter.h"
#include "Platform/Linux/Gnome/GnomeKeyboardEvents.h"
#include "Platform/Linux/Gnome/XwaylandClipboard.h"
#include "Platform/Linux/Unavailable/UnavailableServices.h"
#include "Platform/Linux/Wayland/WaylandConnection.h"
#include "Platform/Linux/Wayland/WaylandKeyboardLayout.h"

#include <memory>

namespace quillmoth::platform {

/// A session of GNOME, or of its compositor alone, on Wayland: its settings and its interfaces on the bus,
/// the clipboard by way of the X server beside it, and more with this program's extension of the shell, which
/// may come and go. The panel is an ordinary window.
class GnomeBackEnd final : public DesktopBackEnd {
public:
    /// What others have serves where GNOME offers nothing better; it outlives the object.
    struct Toolkit {
        Pasteboard& pasteboard;
        PanelFocus& panelFocus;
        /// The process whose window is active, as the accessibility bus tells.
        std::function<std::optional<std::int64_t>()> activeProcess;
        /// What opens and closes the panel.
        std::string toggleCommand;
    };

    /// Fails where the toolkit does not run on Wayland, or neither shell nor compositor are on the bus.
    [[nodiscard]] static Result<std::unique_ptr<GnomeBackEnd>> create(const Toolkit& toolkit);

    ~GnomeBackEnd() override;

    HotKeyCenter& hotKeyCenter() override { return hotKeys_; }

    bool isHotKeyACommand() const override { return !extension_.isThere(); }

    KeyboardLayout& keyboardLayout() override { return layout_; }

    KeyboardEvents& keyboardEvents() override {
        return clipboard_ ? static_cast<KeyboardEvents&>(keys_) : noKeyboardEvents_;
    }

    PanelFocus& panelFocus() override { return toolkit_.panelFocus; }

    Pasteboard& pasteboard() override {
        return clipboard_ ? static_cast<Pasteboard&>(clipboard_->pasteboard()) : toolkit_.pasteboard;
    }

    PanelPlacement* placement() override { return &extension_; }

    std::vector<DesktopOffer> offers() override;

    std::optional<std::int64_t> frontProcess() override;

    std::string frontName() override { return front_.name(); }

    /// It counts as selected in the application that was in front when it changed.
    std::optional<std::string> primarySelection() override;

    std::optional<std::string> selectionInsteadOfCopy(const OtherFocus& hasOtherFocus) override;

    PasteOutcome paste(const std::string& text, std::chrono::steady_clock::time_point deadline,
                       const OtherFocus& hasOtherFocus) override;

    void withdrawPaste() override;

    std::chrono::milliseconds focusReturnTime() const override { return std::chrono::milliseconds(300); }

    bool isCompositing() const override { return true; }

    Subscription onCompositingChange(std::function<void()>) override { return {}; }

    // For the diagnosis

    [[nodiscard]] bool hasExtension() const { return extension_.isThere(); }

    [[nodiscard]] bool hasClipboard() const { return clipboard_ != nullptr; }

    [[nodiscard]] bool sendsKeys() const { return clipboard_ && keys_.canPaste(); }

    /// As GnomeHotKeyCenter::holder.
    [[nodiscard]] std::optional<std::string> holderOf(std::uint32_t keyCode, std::uint32_t carbonModifiers) {
        return hotKeys_.holder(keyCode, carbonModifiers);
    }

private:
    GnomeBackEnd(std::unique_ptr<WaylandConnection> wayland, Toolkit toolkit);
    void notePrimary();
    [[nodiscard]] DesktopOffer shortcutOffer();
    [[nodiscard]] DesktopOffer extensionOffer();

    Toolkit toolkit_;
    std::unique_ptr<WaylandConnection> wayland_;
    WaylandKeyboardLayout layout_;
    GnomeExtension extension_;
    GnomeFront front_;
    /// Null where there is no X server beside the session.
    std::unique_ptr<XwaylandClipboard> clipboard_;
    GnomeKeyboardEvents keys_;
    GnomeHotKeyCenter hotKeys_;
    UnavailableKeyboardEvents noKeyboardEvents_;
    std::optional<std::int64_t> primaryProcess_;
    std::string extensionNote_;
};

} // namespace quillmoth::platform
