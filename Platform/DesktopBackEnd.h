#pragma once

#include "Foundation/Subscription.h"
#include "Platform/DesktopOffer.h"
#include "Platform/HotKeyCenter.h"
#include "Platform/KeyboardEvents.h"
#include "Platform/KeyboardLayout.h"
#include "Platform/PanelFocus.h"
#include "Platform/PanelPlacement.h"
#include "Platform/PasteOutcome.h"
#include "Platform/Pasteboard.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillmoth::platform {

/// What one kind of desktop session offers this program, chosen once at the start. Main thread.
class DesktopBackEnd {
public:
    /// Whether something that is no terminal is known to have the focus in a process.
    using OtherFocus = std::function<bool(std::int64_t process)>;

    virtual ~DesktopBackEnd() = default;

    [[nodiscard]] virtual HotKeyCenter& hotKeyCenter() = 0;

    /// Whether the desktop runs this program's command for the hot key, again and again while it is held.
    [[nodiscard]] virtual bool isHotKeyACommand() const { return false; }

    [[nodiscard]] virtual KeyboardLayout& keyboardLayout() = 0;
    [[nodiscard]] virtual KeyboardEvents& keyboardEvents() = 0;
    [[nodiscard]] virtual PanelFocus& panelFocus() = 0;
    [[nodiscard]] virtual Pasteboard& pasteboard() = 0;

    /// The process of the application in front, other than this one; none where there is none.
    [[nodiscard]] virtual std::optional<std::int64_t> frontProcess() = 0;
    /// What its users call it; empty where that is not known.
    [[nodiscard]] virtual std::string frontName() = 0;
    /// As Workspace::frontmostPrimarySelection.
    [[nodiscard]] virtual std::optional<std::string> primarySelection() = 0;
    /// As Workspace::selectionInsteadOfCopy.
    [[nodiscard]] virtual std::optional<std::string>
    selectionInsteadOfCopy(const OtherFocus& hasOtherFocus) = 0;

    /// Has the application in front paste `text` over what is selected there; an empty text deletes that.
    virtual PasteOutcome paste(const std::string& text, std::chrono::steady_clock::time_point deadline,
                               const OtherFocus& hasOtherFocus) = 0;
    /// What has not been fetched of the latest paste is not to be had any more.
    virtual void withdrawPaste() = 0;

    /// Until the result goes, the session's own key combinations come to that window of this program, as long
    /// as it has the keyboard. Empty where the session does not do so.
    [[nodiscard]] virtual Subscription inhibitShortcuts(PanelFocus::WindowIdentifier /*window*/) {
        return {};
    }

    /// How long after the panel has closed the application in front may be without its focus.
    [[nodiscard]] virtual std::chrono::milliseconds focusReturnTime() const {
        return std::chrono::milliseconds(0);
    }

    /// What places panels; null where they place themselves, or cannot be placed.
    [[nodiscard]] virtual PanelPlacement* placement() { return nullptr; }

    /// What the user may let the desktop do for the program.
    [[nodiscard]] virtual std::vector<DesktopOffer> offers() { return {}; }

    /// Whether windows can be translucent.
    [[nodiscard]] virtual bool isCompositing() const = 0;
    /// Called after that has changed.
    virtual Subscription onCompositingChange(std::function<void()> subscriber) = 0;
};

} // namespace quillmoth::platform
