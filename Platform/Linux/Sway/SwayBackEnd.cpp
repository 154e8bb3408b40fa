#include "Platform/Linux/Sway/SwayBackEnd.h"

#include <QClipboard>
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
    : toolkit_(toolkit), sway_(std::move(sway)), wayland_(std::move(wayland)),
      pasteboard_(WaylandPasteboard::create(*wayland_)), layout_(*wayland_),
      keyboardEvents_(WaylandKeyboardEvents::create(*wayland_, layout_)), front_(*sway_),
      hotKeys_(*sway_, [this](const std::string& name) { return layout_.keycodeOf(name); }),
      stage_(LayerStage::create([this] {
          const auto outputs = sway_->ask(SwayConnection::Question::getOutputs);
          return outputs ? focusedOutput(*outputs) : std::string();
      })) {
    if (stage_)
        frontChanges_ = front_.onChange([this] { stage_->frontChanged(); });
    if (pasteboard_)
        pasteboard_->setPrimaryHandler([this] { notePrimary(); });
    if (keyboardEvents_)
        keyboardEvents_->setVeto([this] { return !pasteboard_ || !pasteboard_->isKept(); });
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

void SwayBackEnd::notePrimary() {
    const bool isOwn = QGuiApplication::clipboard()->ownsSelection();
    primaryProcess_ = isOwn ? std::nullopt : frontProcess();
}

std::optional<std::string> SwayBackEnd::primarySelection() {
    if (!pasteboard_ || !primaryProcess_ || primaryProcess_ != frontProcess())
        return std::nullopt;
    return pasteboard_->primary();
}

PasteOutcome SwayBackEnd::paste(const std::string& text, std::chrono::steady_clock::time_point deadline,
                                const OtherFocus& hasOtherFocus) {
    if (front_.isTerminal(hasOtherFocus))
        return PasteOutcome::terminal;
    if (!pasteboard_ || !keyboardEvents_)
        return PasteOutcome::impossible;
    if (text.empty())
        return keyboardEvents_->postDelete() ? PasteOutcome::fetched : PasteOutcome::impossible;
    return pasteboard_->paste(
        text, [this] { return keyboardEvents_->postPaste(); }, deadline);
}

void SwayBackEnd::withdrawPaste() {
    if (pasteboard_)
        pasteboard_->takeBack();
}

} // namespace quillmoth::platform
