#pragma once

#include "Platform/Linux/AtSpi/AtSpiAccessibility.h"
#include "Platform/Linux/Gnome/GnomeBackEnd.h"
#include "Platform/Linux/KWin/KWinBackEnd.h"
#include "Platform/Linux/Sway/SwayBackEnd.h"
#include "Platform/Linux/Wayland/PlainBackEnd.h"
#include "Platform/Linux/X11/X11BackEnd.h"

#include <memory>
#include <string>

namespace quillmoth {

/// What serves this session, for a look at it beside the running program: one of them, or none.
struct ServingBackEnds {
    std::unique_ptr<platform::X11BackEnd> x11 = nullptr;
    std::unique_ptr<platform::SwayBackEnd> sway = nullptr;
    std::unique_ptr<platform::KWinBackEnd> kwin = nullptr;
    std::unique_ptr<platform::GnomeBackEnd> gnome = nullptr;
    std::unique_ptr<platform::PlainBackEnd> plain = nullptr;
    /// The compositor's, and how it is spoken to; empty on X11.
    std::string name = {};
    std::string way = {};

    /// Null on X11 and in GNOME.
    [[nodiscard]] platform::WaylandBackEnd* wayland() const;

    /// Null on X11.
    [[nodiscard]] platform::DesktopBackEnd* session() const;
};

/// `accessibility` outlives them. Main thread; the program in front may be waited for, for a second.
[[nodiscard]] ServingBackEnds servingBackEnds(const platform::WaylandBackEnd::Toolkit& toolkit,
                                              platform::AtSpiAccessibility& accessibility);

} // namespace quillmoth
