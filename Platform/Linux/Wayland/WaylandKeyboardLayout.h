#pragma once

#include "Platform/KeyboardLayout.h"
#include "Platform/Linux/Wayland/WaylandConnection.h"

#include <xkbcommon/xkbcommon.h>

namespace quillmoth::platform {

/// The keymap of the seat's keyboard. Which of its layouts is in force is told to the window with the
/// keyboard alone, so the first one counts. Main thread; the keymap comes on the connection's.
class WaylandKeyboardLayout final : public KeyboardLayout {
public:
    using Keymap = std::shared_ptr<xkb_keymap>;

    /// `connection` outlives the object, and is stopped before its end.
    explicit WaylandKeyboardLayout(WaylandConnection& connection);
    ~WaylandKeyboardLayout() override;
    WaylandKeyboardLayout(const WaylandKeyboardLayout&) = delete;
    WaylandKeyboardLayout& operator=(const WaylandKeyboardLayout&) = delete;

    std::optional<std::string> translate(std::uint16_t keyCode) override;

    /// The key, by the kernel's table plus 8, that writes the keysym of that name in the first layout without
    /// modifiers.
    [[nodiscard]] std::optional<std::uint32_t> keycodeOf(const std::string& keysymName) const;

    /// Where no keyboard is there, the one that the environment asks for; null where that is not known.
    [[nodiscard]] Keymap keymap() const;

private:
    void followSeat(std::uint32_t capabilities);
    void take(std::uint32_t format, FileDescriptor file, std::uint32_t size);

    wl_seat* seat_;
    wl_keyboard* keyboard_ = nullptr;
    std::unique_ptr<xkb_context, void (*)(xkb_context*)> context_;
    mutable std::mutex mutex_;
    Keymap keymap_;
};

} // namespace quillmoth::platform
