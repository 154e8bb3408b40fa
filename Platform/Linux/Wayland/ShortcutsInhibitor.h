#pragma once

#include "Foundation/Subscription.h"
#include "Platform/PanelFocus.h"

#include <memory>

struct zwp_keyboard_shortcuts_inhibit_manager_v1;

namespace quillmoth::platform {

/// Has the compositor leave its own key combinations to a window of this program. It does so only while the
/// window has the keyboard. Main thread.
class ShortcutsInhibitor {
public:
    /// Null where the toolkit does not run on Wayland, or the compositor does not do so.
    [[nodiscard]] static std::unique_ptr<ShortcutsInhibitor> create();

    ~ShortcutsInhibitor();
    ShortcutsInhibitor(const ShortcutsInhibitor&) = delete;
    ShortcutsInhibitor& operator=(const ShortcutsInhibitor&) = delete;

    /// From now on, until the result goes. Empty where the window is not on screen, or has them already. The
    /// result may outlive the object.
    [[nodiscard]] Subscription inhibit(PanelFocus::WindowIdentifier window);

private:
    struct Held;

    explicit ShortcutsInhibitor(zwp_keyboard_shortcuts_inhibit_manager_v1* manager);

    zwp_keyboard_shortcuts_inhibit_manager_v1* manager_;
    /// At most one: a second one for the same window would be a fault.
    std::shared_ptr<Held> held_;
};

} // namespace quillmoth::platform
