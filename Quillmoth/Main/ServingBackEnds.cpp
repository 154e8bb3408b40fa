#include "Quillmoth/Main/ServingBackEnds.h"

#include <utility>

namespace quillmoth {

platform::WaylandBackEnd* ServingBackEnds::wayland() const {
    if (sway)
        return sway.get();
    if (kwin)
        return kwin.get();
    return plain.get();
}

platform::DesktopBackEnd* ServingBackEnds::session() const {
    return gnome ? static_cast<platform::DesktopBackEnd*>(gnome.get()) : wayland();
}

ServingBackEnds servingBackEnds(const platform::WaylandBackEnd::Toolkit& toolkit,
                                platform::AtSpiAccessibility& accessibility) {
    ServingBackEnds serving;
    const auto activeProcess = [&accessibility] { return accessibility.activeProcess(); };
    if (auto x11 = platform::X11BackEnd::create()) {
        serving.x11 = std::move(*x11);
    } else if (auto sway = platform::SwayBackEnd::create(toolkit)) {
        serving = {.sway = std::move(*sway), .name = "sway", .way = "through its socket"};
    } else if (auto kwin = platform::KWinBackEnd::create(toolkit)) {
        serving = {.kwin = std::move(*kwin), .name = "KWin", .way = "over the session bus"};
        serving.kwin->awaitFront();
    } else if (auto gnome = platform::GnomeBackEnd::create({.pasteboard = toolkit.pasteboard,
                                                            .panelFocus = toolkit.panelFocus,
                                                            .activeProcess = activeProcess,
                                                            .toggleCommand = {}})) {
        serving = {
            .gnome = std::move(*gnome), .name = "GNOME", .way = "through its settings and the session bus"};
    } else if (auto plain = platform::PlainBackEnd::create(toolkit, activeProcess)) {
        serving = {
            .plain = std::move(*plain), .name = "the compositor", .way = "by protocols of Wayland alone"};
    }
    return serving;
}

} // namespace quillmoth
