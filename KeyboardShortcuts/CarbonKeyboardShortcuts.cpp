#include "KeyboardShortcuts/CarbonKeyboardShortcuts.h"

#include "Foundation/FatalError.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace quillmoth::KeyboardShortcuts {

namespace {

/// The four characters "HKRG".
constexpr std::uint32_t kSignature = 0x484B5247;

std::uint32_t unsigned32(std::int64_t value) {
    if (value < 0 || value > std::numeric_limits<std::uint32_t>::max())
        fatalError("Not an unsigned 32-bit value in a hot key: " + std::to_string(value));
    return static_cast<std::uint32_t>(value);
}

} // namespace

CarbonKeyboardShortcuts::CarbonKeyboardShortcuts(platform::HotKeyCenter& hotKeyCenter)
    : hotKeyCenter_(hotKeyCenter), self_(std::make_shared<CarbonKeyboardShortcuts*>(this)) {}

CarbonKeyboardShortcuts::~CarbonKeyboardShortcuts() {
    for (const auto& [id, hotKey] : hotKeys_)
        hotKeyCenter_.unregisterEventHotKey(hotKey->carbonHotKey);
}

void CarbonKeyboardShortcuts::registerShortcut(const Shortcut& shortcut, Callback onKeyDown,
                                               Callback onKeyUp) {
    const auto id = ++lastHotKeyId_;
    platform::HotKeyCenter::Handle handle = 0;
    const auto status = hotKeyCenter_.registerEventHotKey(
        unsigned32(shortcut.carbonKeyCode), unsigned32(shortcut.carbonModifiers),
        {.signature = kSignature, .id = unsigned32(id)}, handle);
    if (status != platform::noErr || handle == 0)
        return;
    hotKeys_[id] =
        std::make_shared<HotKey>(HotKey{shortcut, id, handle, std::move(onKeyDown), std::move(onKeyUp)});
    installEventHandlerIfNeeded();
}

void CarbonKeyboardShortcuts::unregisterShortcut(const Shortcut& shortcut) {
    const auto found = std::find_if(hotKeys_.begin(), hotKeys_.end(),
                                    [&](const auto& entry) { return entry.second->shortcut == shortcut; });
    if (found == hotKeys_.end())
        return;
    hotKeyCenter_.unregisterEventHotKey(found->second->carbonHotKey);
    hotKeys_.erase(found);
}

std::vector<Shortcut> CarbonKeyboardShortcuts::system() const {
    std::vector<Shortcut> shortcuts;
    for (const auto& hotKey : hotKeyCenter_.copySymbolicHotKeys()) {
        if (hotKey.enabled && hotKey.keyCode && hotKey.carbonModifiers)
            shortcuts.emplace_back(*hotKey.keyCode, *hotKey.carbonModifiers);
    }
    return shortcuts;
}

bool CarbonKeyboardShortcuts::isSystems(const Shortcut& shortcut) const {
    const auto listed = system();
    return std::find(listed.begin(), listed.end(), shortcut) != listed.end() ||
           hotKeyCenter_.isTakenElsewhere(unsigned32(shortcut.carbonKeyCode),
                                          unsigned32(shortcut.carbonModifiers));
}

void CarbonKeyboardShortcuts::installEventHandlerIfNeeded() {
    if (isEventHandlerInstalled_ || !hotKeyCenter_.hasEventTarget())
        return;
    const auto status = hotKeyCenter_.installEventHandler(
        [weak = std::weak_ptr(self_)](const platform::HotKeyEvent* event) -> platform::OSStatus {
            const auto self = weak.lock();
            return self ? (*self)->handle(event) : platform::eventNotHandledErr;
        });
    isEventHandlerInstalled_ = status == platform::noErr;
}

platform::OSStatus CarbonKeyboardShortcuts::handle(const platform::HotKeyEvent* event) {
    if (!event)
        return platform::eventNotHandledErr;
    if (!event->hotKeyID)
        return event->parameterError;
    if (event->hotKeyID->signature != kSignature)
        return platform::eventNotHandledErr;
    const auto found = hotKeys_.find(event->hotKeyID->id);
    if (found == hotKeys_.end())
        return platform::eventNotHandledErr;
    // Kept while its callback runs, which may end the registration.
    const auto hotKey = found->second;
    switch (event->kind) {
    case platform::kEventHotKeyPressed:
        hotKey->onKeyDown(hotKey->shortcut);
        return platform::noErr;
    case platform::kEventHotKeyReleased:
        hotKey->onKeyUp(hotKey->shortcut);
        return platform::noErr;
    default:
        return platform::eventNotHandledErr;
    }
}

} // namespace quillmoth::KeyboardShortcuts
