#pragma once

#include "Foundation/Subscription.h"
#include "Platform/Linux/X11/Server/X11Connection.h"

#include <functional>

namespace quillmoth::platform {

/// Whether windows on the screen can be translucent. Main thread.
class X11Screen {
public:
    /// `connection` outlives the object.
    explicit X11Screen(X11Connection& connection);

    /// True where a compositing manager runs.
    [[nodiscard]] bool isComposited() const { return isComposited_; }

    /// Called with the new state after a compositing manager has come or gone.
    Subscription onCompositionChange(std::function<void(bool)> subscriber) {
        return changed_.subscribe(std::move(subscriber));
    }

private:
    void handle(const xcb_generic_event_t& event);
    [[nodiscard]] bool hasCompositor() const;

    X11Connection& connection_;
    /// By the EWMH, whoever owns it composites the screen.
    xcb_atom_t selection_;
    std::uint8_t selectionEvent_ = 0;
    bool isComposited_ = false;
    Signal<bool> changed_;
    Subscription events_;
};

} // namespace quillmoth::platform
