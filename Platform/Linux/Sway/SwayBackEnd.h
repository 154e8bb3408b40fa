#pragma once

#include "Foundation/Result.h"
#include "Platform/Linux/Sway/SwayConnection.h"
#include "Platform/Linux/Sway/SwayFront.h"
#include "Platform/Linux/Sway/SwayHotKeyCenter.h"
#include "Platform/Linux/Wayland/WaylandBackEnd.h"

#include <memory>

namespace quillmoth::platform {

/// A session of sway: its own socket for keys and windows, and the protocols of Wayland for the rest.
class SwayBackEnd final : public WaylandBackEnd {
public:
    /// Fails where the toolkit does not run on Wayland, or the compositor has no such socket.
    [[nodiscard]] static Result<std::unique_ptr<SwayBackEnd>> create(const Toolkit& toolkit);

    HotKeyCenter& hotKeyCenter() override { return hotKeys_; }

    std::optional<std::int64_t> frontProcess() override;

    std::string frontName() override { return front_.name(); }

private:
    SwayBackEnd(std::unique_ptr<SwayConnection> sway, std::unique_ptr<WaylandConnection> wayland,
                const Toolkit& toolkit);

    bool isFrontTerminal(const OtherFocus& hasOtherFocus) override {
        return front_.isTerminal(hasOtherFocus);
    }

    std::unique_ptr<SwayConnection> sway_;
    SwayFront front_;
    SwayHotKeyCenter hotKeys_;
    Subscription frontChanges_;
};

} // namespace quillmoth::platform
