#pragma once

#include "Foundation/Result.h"
#include "Platform/Linux/X11/Keys/X11HotKeyCenter.h"
#include "Platform/Linux/X11/Keys/X11HotKeyProbe.h"
#include "Platform/Linux/X11/Keys/X11KeyboardEvents.h"
#include "Platform/Linux/X11/Keys/X11KeyboardLayout.h"
#include "Platform/Linux/X11/Panel/X11PanelFocus.h"
#include "Platform/Linux/X11/Server/X11Screen.h"
#include "Platform/Linux/X11/X11FrontApplication.h"

#include <memory>

namespace quillmoth::platform {

/// All that the X server offers this program, wired together. Made once, on the main thread, after the Qt
/// application; ends before it.
class X11BackEnd {
public:
    /// Fails where the toolkit does not run on X11 or the server lacks an extension.
    [[nodiscard]] static Result<std::unique_ptr<X11BackEnd>> create();

    /// Whether keys can be sent to other programs.
    [[nodiscard]] bool takesKeys() const { return connection_->takesKeys(); }

    X11HotKeyCenter& hotKeyCenter() { return hotKeyCenter_; }

    X11PanelFocus& panelFocus() { return panelFocus_; }

    X11KeyboardEvents& keyboardEvents() { return keyboardEvents_; }

    X11KeyboardLayout& keyboardLayout() { return keyboardLayout_; }

    X11FrontApplication& frontApplication() { return frontApplication_; }

    X11HotKeyProbe& hotKeyProbe() { return hotKeyProbe_; }

    X11Screen& screen() { return screen_; }

private:
    X11BackEnd(std::unique_ptr<X11Connection> hotKeyConnection, std::unique_ptr<X11Connection> connection);

    std::unique_ptr<X11Connection> connection_;
    X11HotKeyCenter hotKeyCenter_;
    X11PanelFocus panelFocus_;
    X11KeyboardEvents keyboardEvents_;
    X11KeyboardLayout keyboardLayout_;
    X11FrontApplication frontApplication_;
    X11HotKeyProbe hotKeyProbe_;
    X11Screen screen_;
};

} // namespace quillmoth::platform
