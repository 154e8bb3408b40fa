#pragma once

#include "Platform/HotKeyCenter.h"
#include "Platform/KeyboardLayout.h"

#include <functional>
#include <string>

namespace quillmoth::platform {

/// Hot keys of a window system, with what the desktop around it keeps for itself: by its settings, and by a
/// probe. Main thread.
///
/// The key of the window menu, Alt+Space, is left out: window managers have it, and the program takes it over
/// by default.
class DesktopHotKeyCenter final : public HotKeyCenter {
public:
    struct Desktop {
        /// As the window manager calls itself; empty for none.
        std::function<std::string()> windowManagerName;
        /// Whether another program has the combination.
        std::function<bool(std::uint32_t keyCode, std::uint32_t carbonModifiers)> isTaken;
    };

    /// `hotKeys` and `layout` outlive the object.
    DesktopHotKeyCenter(HotKeyCenter& hotKeys, KeyboardLayout& layout, Desktop desktop);

    [[nodiscard]] bool hasEventTarget() const override { return hotKeys_.hasEventTarget(); }

    OSStatus registerEventHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers, EventHotKeyID id,
                                 Handle& handle) override {
        return hotKeys_.registerEventHotKey(keyCode, carbonModifiers, id, handle);
    }

    OSStatus unregisterEventHotKey(Handle handle) override { return hotKeys_.unregisterEventHotKey(handle); }

    OSStatus installEventHandler(Handler handler) override {
        return hotKeys_.installEventHandler(std::move(handler));
    }

    [[nodiscard]] std::vector<SymbolicHotKey> copySymbolicHotKeys() override;
    [[nodiscard]] bool isTakenElsewhere(std::uint32_t keyCode, std::uint32_t carbonModifiers) override;

private:
    HotKeyCenter& hotKeys_;
    KeyboardLayout& layout_;
    Desktop desktop_;
};

} // namespace quillmoth::platform
