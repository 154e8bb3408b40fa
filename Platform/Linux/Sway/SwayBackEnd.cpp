#include "Platform/Linux/Sway/SwayBackEnd.h"

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
    : sway_(std::move(sway)), wayland_(std::move(wayland)), toolkit_(toolkit), layout_(*wayland_),
      front_(*sway_), hotKeys_(*sway_, [this](const std::string& name) { return layout_.keycodeOf(name); }),
      stage_(LayerStage::create([this] {
          const auto outputs = sway_->ask(SwayConnection::Question::getOutputs);
          return outputs ? focusedOutput(*outputs) : std::string();
      })) {
    if (stage_)
        frontChanges_ = front_.onChange([this] { stage_->frontChanged(); });
    wayland_->start();
}

SwayBackEnd::~SwayBackEnd() {
    wayland_->stop();
}

std::optional<std::int64_t> SwayBackEnd::frontProcess() {
    const auto window = front_.window();
    return window ? std::optional(window->process) : std::nullopt;
}

std::optional<std::string> SwayBackEnd::selectionInsteadOfCopy(const OtherFocus& hasOtherFocus) {
    return front_.isTerminal(hasOtherFocus) ? std::optional(primarySelection().value_or("")) : std::nullopt;
}

PasteOutcome SwayBackEnd::paste(const std::string&, std::chrono::steady_clock::time_point,
                                const OtherFocus& hasOtherFocus) {
    return front_.isTerminal(hasOtherFocus) ? PasteOutcome::terminal : PasteOutcome::impossible;
}

} // namespace quillmoth::platform
