#include "Platform/Linux/Wayland/PlainBackEnd.h"

#include "Platform/Linux/Shared/ApplicationName.h"
#include "Platform/Linux/Shared/Terminals.h"
#include "Platform/Linux/Wayland/VirtualKeyboardEvents.h"

#include <QGuiApplication>
#include <fstream>
#include <utility>

namespace quillmoth::platform {

Result<std::unique_ptr<PlainBackEnd>> PlainBackEnd::create(const Toolkit& toolkit,
                                                           AccessibleFront::ActiveProcess activeProcess) {
    if (!qGuiApp || !QGuiApplication::platformName().startsWith(QStringLiteral("wayland")))
        return Error{"the toolkit does not run on Wayland"};
    auto wayland = WaylandConnection::open();
    if (!wayland)
        return wayland.error();
    if (!(*wayland)->offers("zwlr_layer_shell_v1") && !(*wayland)->offers("zwlr_data_control_manager_v1"))
        return Error{"the compositor offers neither layers nor its clipboard"};
    return std::unique_ptr<PlainBackEnd>(
        new PlainBackEnd(std::move(*wayland), toolkit, std::move(activeProcess)));
}

PlainBackEnd::PlainBackEnd(std::unique_ptr<WaylandConnection> wayland, const Toolkit& toolkit,
                           AccessibleFront::ActiveProcess activeProcess)
    : WaylandBackEnd({.connection = std::move(wayland),
                      .makeKeyboardEvents = VirtualKeyboardEvents::create,
                      // No protocol tells which one is in use: the toolkit's first is taken.
                      .focusedOutput = [] { return std::string(); }},
                     toolkit),
      front_(std::move(activeProcess)) {}

std::string PlainBackEnd::frontName() {
    const auto process = frontProcess();
    std::string name;
    if (process) {
        std::ifstream file("/proc/" + std::to_string(*process) + "/comm");
        std::getline(file, name);
    }
    return applicationName(name);
}

bool PlainBackEnd::isFrontTerminal(const OtherFocus& hasOtherFocus) {
    const auto process = frontProcess();
    return !process || isTerminalProcess(*process, hasOtherFocus);
}

} // namespace quillmoth::platform
