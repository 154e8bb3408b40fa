#pragma once

#include "Foundation/Result.h"
#include "Platform/Linux/KWin/KWinFront.h"
#include "Platform/Linux/KWin/KWinHotKeyCenter.h"
#include "Platform/Linux/Wayland/WaylandBackEnd.h"

#include <memory>

namespace quillmoth::platform {

/// A session of KWin: the session bus for keys and windows, and the protocols of Wayland for the rest.
class KWinBackEnd final : public WaylandBackEnd {
public:
    /// Fails where the toolkit does not run on Wayland, where the compositor is not KWin or has no layers, or
    /// where KWin or KDE's service for hot keys is not on the session bus. Where KWin takes no keys from this
    /// program `askForKeys` is called, if given; it may take effect some seconds later.
    [[nodiscard]] static Result<std::unique_ptr<KWinBackEnd>>
    create(const Toolkit& toolkit, const std::function<void()>& askForKeys = nullptr);

    KWinHotKeyCenter& hotKeyCenter() override { return hotKeys_; }

    std::optional<std::int64_t> frontProcess() override;
    std::string frontName() override;

    /// Handles events until KWin has told which program is in front, for a second at most.
    void awaitFront() const;

private:
    KWinBackEnd(std::unique_ptr<WaylandConnection> wayland, const Toolkit& toolkit);

    bool isFrontTerminal(const OtherFocus& hasOtherFocus) override;

    KWinFront front_;
    KWinHotKeyCenter hotKeys_;
    Subscription frontChanges_;
};

} // namespace quillmoth::platform
