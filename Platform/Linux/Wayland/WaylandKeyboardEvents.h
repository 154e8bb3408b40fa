#pragma once

#include "Platform/KeyboardEvents.h"
#include "Platform/Linux/Wayland/WaylandConnection.h"
#include "Platform/Linux/Wayland/WaylandKeyboardLayout.h"

#include <vector>
#include <xkbcommon/xkbcommon.h>

namespace quillmoth::platform {

/// Synthetic keys over a connection to the compositor, by whichever of its protocols a subclass speaks:
/// Command is Control. Main thread.
class WaylandKeyboardEvents : public KeyboardEvents {
public:
    /// As long as `isForbidden` says so no key with a flag is sent: a copy would destroy what cannot be
    /// brought back.
    void setVeto(std::function<bool()> isForbidden) { isForbidden_ = std::move(isForbidden); }

    std::optional<CGKeyboardEvent> createKeyboardEvent(std::uint16_t keyCode, bool keyDown) override;
    void post(const CGKeyboardEvent& event) override;

    /// Whether the compositor takes keys now.
    [[nodiscard]] virtual bool canSend() { return true; }

    struct Key {
        xkb_keysym_t keysym = 0;
        bool control = false;
    };

    /// One after the other. False where the keyboard has no key for one of them, or the compositor has gone.
    bool postKeys(const std::vector<Key>& keys);

protected:
    struct Stroke {
        /// As in the kernel's table, plus 8.
        std::uint32_t keycode = 0;
        std::uint32_t layout = 0;
        bool control = false;
        bool shift = false;
    };

    /// Both outlive the object; the connection is stopped before its end.
    WaylandKeyboardEvents(WaylandConnection& connection, const WaylandKeyboardLayout& layout)
        : connection_(connection), layout_(layout) {}

    // On the connection's thread
    /// Before each key. False where none can be sent.
    virtual bool makeReady() { return true; }

    /// Control and Shift go down before the key, and up behind it.
    virtual void send(const Stroke& stroke, bool isDown) = 0;

    /// Returns after the compositor has handled the keys. False where it has gone.
    virtual bool finish() { return connection_.synchronize(); }

    WaylandConnection& connection_;
    const WaylandKeyboardLayout& layout_;

private:
    [[nodiscard]] std::optional<Stroke> strokeFor(const Key& key) const;
    bool strike(const Stroke& stroke);

    std::function<bool()> isForbidden_;
};

} // namespace quillmoth::platform
