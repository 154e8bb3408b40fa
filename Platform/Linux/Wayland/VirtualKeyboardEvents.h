#pragma once

#include "Platform/Linux/Wayland/WaylandKeyboardEvents.h"

struct zwp_virtual_keyboard_v1;
struct zwp_virtual_keyboard_manager_v1;

namespace quillmoth::platform {

/// Synthetic keys by a keyboard that the program plays, made with the first of them and kept, with the keymap
/// of the user's own. What the user holds on another keyboard does not count with them. Main thread.
class VirtualKeyboardEvents final : public WaylandKeyboardEvents {
public:
    /// Before the connection's thread starts. Null where the compositor takes no keys. Both outlive the
    /// object; the connection is stopped before its end.
    [[nodiscard]] static std::unique_ptr<VirtualKeyboardEvents> create(WaylandConnection& connection,
                                                                       const WaylandKeyboardLayout& layout);

    ~VirtualKeyboardEvents() override;

private:
    VirtualKeyboardEvents(WaylandConnection& connection, const WaylandKeyboardLayout& layout,
                          zwp_virtual_keyboard_manager_v1* manager);

    bool makeReady() override;
    void send(const Stroke& stroke, bool isDown) override;
    void sendModifiers(std::uint32_t depressed, std::uint32_t layout);

    zwp_virtual_keyboard_manager_v1* manager_;
    zwp_virtual_keyboard_v1* keyboard_ = nullptr;
    /// What the keyboard has been given.
    std::string keymapText_;
    std::uint32_t controlBit_ = 0;
    std::uint32_t shiftBit_ = 0;
    std::uint32_t time_ = 1;
};

} // namespace quillmoth::platform
