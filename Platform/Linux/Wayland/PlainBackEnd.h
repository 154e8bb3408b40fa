#pragma once

#include "Foundation/Result.h"
#include "Platform/Linux/Wayland/AccessibleFront.h"
#include "Platform/Linux/Wayland/WaylandBackEnd.h"

namespace quillmoth::platform {

/// A session of a compositor that is spoken to by protocols of Wayland alone: the panel, the clipboard and
/// the synthetic keys as far as it offers them, the program in front by the accessibility bus, no hot key.
class PlainBackEnd final : public WaylandBackEnd {
public:
    /// Fails where the toolkit does not run on Wayland, or the compositor has neither layers nor the protocol
    /// for clipboards.
    [[nodiscard]] static Result<std::unique_ptr<PlainBackEnd>>
    create(const Toolkit& toolkit, AccessibleFront::ActiveProcess activeProcess);

    HotKeyCenter& hotKeyCenter() override { return noHotKeys_; }

    std::optional<std::int64_t> frontProcess() override { return front_.process(); }

    std::string frontName() override;

private:
    PlainBackEnd(std::unique_ptr<WaylandConnection> wayland, const Toolkit& toolkit,
                 AccessibleFront::ActiveProcess activeProcess);

    /// What is not known may be one.
    bool isFrontTerminal(const OtherFocus& hasOtherFocus) override;

    AccessibleFront front_;
    UnavailableHotKeyCenter noHotKeys_;
};

} // namespace quillmoth::platform
