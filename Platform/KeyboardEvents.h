#pragma once

#include <cstdint>
#include <memory>

namespace quillmoth::platform {

/// A source of synthetic key events.
class CGEventSource {
public:
    virtual ~CGEventSource() = default;
};

/// One press or release of a key position.
struct CGKeyboardEvent {
    /// Virtual key code: a position on the keyboard, not a character.
    std::uint16_t keyCode = 0;
    bool keyDown = false;
    /// Event-flag masks; only kCGEventFlagMaskCommand is used.
    std::uint64_t flags = 0;
};

constexpr std::uint64_t kCGEventFlagMaskCommand = 0x100000;
constexpr std::uint32_t kCGEventSourceStateHIDSystemState = 1;
constexpr std::uint32_t kCGHIDEventTap = 0;

/// Synthetic key presses to whatever application has the keyboard. Main thread.
class KeyboardEvents {
public:
    virtual ~KeyboardEvents() = default;

    [[nodiscard]] virtual std::shared_ptr<CGEventSource> createSource(std::uint32_t stateID) = 0;

    /// None where no event can be made.
    [[nodiscard]] virtual std::unique_ptr<CGKeyboardEvent>
    createKeyboardEvent(const std::shared_ptr<CGEventSource>& source, std::uint16_t keyCode,
                        bool keyDown) = 0;

    /// Modifiers that the user holds do not reach the receiver with it.
    virtual void post(std::uint32_t tap, const CGKeyboardEvent& event) = 0;
};

} // namespace quillmoth::platform
