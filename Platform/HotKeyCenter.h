#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillmoth::platform {

using OSStatus = std::int32_t;
constexpr OSStatus noErr = 0;
constexpr OSStatus eventNotHandledErr = -9874;

struct EventHotKeyID {
    std::uint32_t signature = 0;
    std::uint32_t id = 0;
};

constexpr std::uint32_t kEventHotKeyPressed = 5;
constexpr std::uint32_t kEventHotKeyReleased = 6;

/// An event of the keyboard class. `hotKeyID` absent: reading it failed, with `parameterError`.
struct HotKeyEvent {
    std::uint32_t kind = 0;
    std::optional<EventHotKeyID> hotKeyID;
    OSStatus parameterError = noErr;
};

/// A combination that the desktop keeps for itself.
struct SymbolicHotKey {
    bool enabled = false;
    std::optional<std::int64_t> keyCode;
    std::optional<std::int64_t> carbonModifiers;
};

/// System-wide key combinations, in virtual key codes and Carbon modifier masks. Main thread; events come
/// there.
class HotKeyCenter {
public:
    using Handle = std::uint64_t;
    /// `event` may be null.
    using Handler = std::function<OSStatus(const HotKeyEvent* event)>;

    virtual ~HotKeyCenter() = default;

    [[nodiscard]] virtual bool hasEventTarget() const = 0;

    /// `handle` is written on success only; it stays 0 where the system gave none.
    virtual OSStatus registerEventHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers,
                                         EventHotKeyID id, Handle& handle) = 0;
    virtual OSStatus unregisterEventHotKey(Handle handle) = 0;
    virtual OSStatus installEventHandler(Handler handler) = 0;

    /// What the desktop itself has taken, as far as it can be read.
    [[nodiscard]] virtual std::vector<SymbolicHotKey> copySymbolicHotKeys() = 0;

    /// Whether another program has the combination now, as far as the window system tells.
    [[nodiscard]] virtual bool isTakenElsewhere(std::uint32_t /*keyCode*/,
                                                std::uint32_t /*carbonModifiers*/) {
        return false;
    }

    /// Why no hot key can be had on this desktop, and what to do instead; empty where one can.
    [[nodiscard]] virtual std::string obstacle() const { return {}; }
};

} // namespace quillmoth::platform
