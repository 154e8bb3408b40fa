#pragma once

#include "Platform/KeyboardLayout.h"
#include "Platform/Linux/X11/Server/X11Connection.h"

#include <memory>

struct xkb_context;

namespace quillmoth::platform {

/// The keyboard layout of the X server, by xkbcommon. A layout without Latin letters gives way to the first
/// one of the user's that has them, since shortcuts are named in those.
class X11KeyboardLayout : public KeyboardLayout {
public:
    /// `connection` outlives the object.
    explicit X11KeyboardLayout(X11Connection& connection);
    ~X11KeyboardLayout() override;

    std::optional<std::string> translate(std::uint16_t keyCode) override;

private:
    X11Connection& connection_;
    std::unique_ptr<xkb_context, void (*)(xkb_context*)> context_;
};

} // namespace quillmoth::platform
