#pragma once

#include "KeyboardShortcuts/Shortcut.h"
#include "Platform/HotKeyCenter.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace quillmoth::KeyboardShortcuts {

/// The registry of the combinations that this program has registered with the system: one record each. Main
/// thread. Ends its registrations with itself.
class CarbonKeyboardShortcuts {
public:
    using Callback = std::function<void(const Shortcut&)>;

    /// `hotKeyCenter` outlives the object.
    explicit CarbonKeyboardShortcuts(platform::HotKeyCenter& hotKeyCenter);
    ~CarbonKeyboardShortcuts();
    CarbonKeyboardShortcuts(const CarbonKeyboardShortcuts&) = delete;
    CarbonKeyboardShortcuts& operator=(const CarbonKeyboardShortcuts&) = delete;

    /// Silently does nothing where the system refuses.
    void registerShortcut(const Shortcut& shortcut, Callback onKeyDown, Callback onKeyUp);

    /// Does nothing for a shortcut that is not registered.
    void unregisterShortcut(const Shortcut& shortcut);

    /// What the desktop keeps for itself, asked anew at each call.
    [[nodiscard]] std::vector<Shortcut> system() const;

    /// Whether the desktop or another program has the shortcut; asked anew at each call.
    [[nodiscard]] bool isSystems(const Shortcut& shortcut) const;

private:
    struct HotKey {
        Shortcut shortcut;
        std::int64_t carbonHotKeyId;
        platform::HotKeyCenter::Handle carbonHotKey;
        Callback onKeyDown;
        Callback onKeyUp;
    };

    void installEventHandlerIfNeeded();
    platform::OSStatus handle(const platform::HotKeyEvent* event);

    platform::HotKeyCenter& hotKeyCenter_;
    std::map<std::int64_t, std::shared_ptr<HotKey>> hotKeys_;
    std::int64_t lastHotKeyId_ = 0;
    bool isEventHandlerInstalled_ = false;
    // The system keeps the handler for the life of the process; this tells it that the registry has gone.
    std::shared_ptr<CarbonKeyboardShortcuts*> self_;
};

} // namespace quillmoth::KeyboardShortcuts
