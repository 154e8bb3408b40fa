#include "Platform/Linux/Sway/SwayBackEnd.h"

#include "Platform/Linux/Wayland/VirtualKeyboardEvents.h"

#include <QGuiApplication>
#include <utility>

namespace quillmoth::platform {

Result<std::unique_ptr<SwayBackEnd>> SwayBackEnd::create(const Toolkit& toolkit) {
    if (!qGuiApp || !QGuiApplication::platformName().startsWith(QStringLiteral("wayland")))
        return Error{"the toolkit does not run on Wayland"};
    auto sway = SwayConnection::open();
    if (!sway)
        return sway.error();
    auto wayland = WaylandConnection::open();
    if (!wayland)
        return wayland.error();
    return std::unique_ptr<SwayBackEnd>(new SwayBackEnd(std::move(*sway), std::move(*wayland), toolkit));
}

SwayBackEnd::SwayBackEnd(std::unique_ptr<SwayConnection> sway, std::unique_ptr<WaylandConnection> wayland,
                         const Toolkit& toolkit)
    : WaylandBackEnd({.connection = std::move(wayland),
                      .makeKeyboardEvents = VirtualKeyboardEvents::create,
                      .focusedOutput =
                          [this] {
                              const auto outputs = sway_->ask(SwayConnection::Question::getOutputs);
                              return outputs ? focusedOutput(*outputs) : std::string();
                          }},
                     toolkit),
      sway_(std::move(sway)), front_(*sway_),
      hotKeys_(*sway_, [this](const std::string& name) { return layout().keycodeOf(name); }),
      frontChanges_(front_.onChange([this] { frontChanged(); })) {}

std::optional<std::int64_t> SwayBackEnd::frontProcess() {
    const auto window = front_.window();
    return window ? std::optional(window->process) : std::nullopt;
}

} // namespace quillmoth::platform
