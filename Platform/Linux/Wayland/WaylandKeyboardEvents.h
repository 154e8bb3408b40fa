#pragma once

#include "Platform/KeyboardEvents.h"
#include "Platform/Linux/Wayland/WaylandConnection.h"
#include "Platform/Linux/Wayland/WaylandKeyboardLayout.h"

struct zwp_virtual_keyboard_v1;
struct zwp_virtual_keyboard_manager_v1;

namespace quillmoth::platform {

/// Synthetic keys by a keyboard that the program plays, made with the first of them and kept, with the keymap
/// of the user's own: Command is Control. What the user holds on another keyboard does not count with them.
/// Main thread.
class WaylandKeyboardEvents final : public KeyboardEvents {
public:
    /// Before the connection's thread starts. Null where the compositor takes no keys. Both outlive the
    /// object; the connection is stopped before its end.
    [[nodiscard]] static std::unique_ptr<WaylandKeyboardEvents> create(WaylandConnection& connection,
                                                                       const WaylandKeyboardLayout& layout);

    ~WaylandKeyboardEvents() override;

    /// As long as `isForbidden` says so no key with a flag is sent: a copy would destroy what cannot be
    /// brought back.
    void setVeto(std::function<bool()> isForbidden) { isForbidden_ = std::move(isForbidden); }

    std::optional<CGKeyboardEvent> createKeyboardEvent(std::uint16_t keyCode, bool keyDown) override;
    void post(const CGKeyboardEvent& event) override;

    /// Control with the key that writes a "v". False where there is none, or the compositor has gone.
    bool postPaste();
    bool postDelete();

private:
    struct Stroke {
        /// As in the kernel's table, plus 8.
        std::uint32_t keycode = 0;
        std::uint32_t layout = 0;
        bool control = false;
    };

    WaylandKeyboardEvents(WaylandConnection& connection, const WaylandKeyboardLayout& layout,
                          zwp_virtual_keyboard_manager_v1* manager);

    [[nodiscard]] std::optional<Stroke> strokeFor(xkb_keysym_t keysym, bool control) const;
    bool strike(const Stroke& stroke);
    /// The rest is on the connection's thread.
    bool makeReady();
    void send(const Stroke& stroke, bool isDown);
    void sendModifiers(std::uint32_t depressed, std::uint32_t layout);

    WaylandConnection& connection_;
    const WaylandKeyboardLayout& layout_;
    zwp_virtual_keyboard_manager_v1* manager_;
    zwp_virtual_keyboard_v1* keyboard_ = nullptr;
    /// What the keyboard has been given.
    std::string keymapText_;
    std::uint32_t controlBit_ = 0;
    std::uint32_t time_ = 1;
    std::function<bool()> isForbidden_;
};

} // namespace quillmoth::platform
