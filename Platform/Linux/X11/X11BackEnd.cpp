#include "Platform/Linux/X11/X11BackEnd.h"

#include <QGuiApplication>
#include <utility>

namespace quillmoth::platform {

Result<std::unique_ptr<X11BackEnd>> X11BackEnd::create() {
    if (!qGuiApp || !qGuiApp->nativeInterface<QNativeInterface::QX11Application>())
        return Error{"This desktop session does not run on X11."};
    auto hotKeyConnection = X11Connection::open();
    if (!hotKeyConnection)
        return hotKeyConnection.error();
    if ((*hotKeyConnection)->isBesideWayland())
        return Error{"This desktop session runs on Wayland."};
    auto connection = X11Connection::open();
    if (!connection)
        return connection.error();
    return std::unique_ptr<X11BackEnd>(new X11BackEnd(std::move(*hotKeyConnection), std::move(*connection)));
}

X11BackEnd::X11BackEnd(std::unique_ptr<X11Connection> hotKeyConnection,
                       std::unique_ptr<X11Connection> connection)
    : connection_(std::move(connection)), hotKeyCenter_(std::move(hotKeyConnection)),
      panelFocus_(*connection_, hotKeyCenter_),
      keyboardEvents_(*connection_,
                      [this](const std::function<void()>& work) { panelFocus_.withoutGrab(work); }),
      keyboardLayout_(*connection_), frontApplication_(*connection_), hotKeyProbe_(*connection_),
      screen_(*connection_) {}

} // namespace quillmoth::platform
