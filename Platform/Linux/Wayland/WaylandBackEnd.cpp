#include "Platform/Linux/Wayland/WaylandBackEnd.h"

#include <QClipboard>
#include <QGuiApplication>
#include <utility>

namespace quillmoth::platform {

WaylandBackEnd::WaylandBackEnd(Compositor compositor, const Toolkit& toolkit)
    : toolkit_(toolkit), wayland_(std::move(compositor.connection)),
      pasteboard_(WaylandPasteboard::create(*wayland_)), layout_(*wayland_),
      keyboardEvents_(compositor.makeKeyboardEvents(*wayland_, layout_)),
      stage_(LayerStage::create(std::move(compositor.focusedOutput))),
      shortcuts_(ShortcutsInhibitor::create()) {
    if (pasteboard_)
        pasteboard_->setPrimaryHandler([this] { notePrimary(); });
    if (keyboardEvents_)
        keyboardEvents_->setVeto([this] { return !pasteboard_ || !pasteboard_->isKept(); });
    wayland_->start();
}

WaylandBackEnd::~WaylandBackEnd() {
    wayland_->stop();
}

void WaylandBackEnd::frontChanged() {
    if (stage_)
        stage_->frontChanged();
}

void WaylandBackEnd::setYieldHandler(std::function<void()> handler) {
    if (stage_)
        stage_->setYieldHandler(std::move(handler));
}

std::optional<std::string> WaylandBackEnd::selectionInsteadOfCopy(const OtherFocus& hasOtherFocus) {
    return isFrontTerminal(hasOtherFocus) ? std::optional(primarySelection().value_or("")) : std::nullopt;
}

void WaylandBackEnd::notePrimary() {
    const bool isOwn = QGuiApplication::clipboard()->ownsSelection();
    primaryProcess_ = isOwn ? std::nullopt : frontProcess();
}

std::optional<std::string> WaylandBackEnd::primarySelection() {
    if (!pasteboard_ || !primaryProcess_ || primaryProcess_ != frontProcess())
        return std::nullopt;
    return pasteboard_->primary();
}

PasteOutcome WaylandBackEnd::paste(const std::string& text, std::chrono::steady_clock::time_point deadline,
                                   const OtherFocus& hasOtherFocus) {
    if (isFrontTerminal(hasOtherFocus))
        return PasteOutcome::terminal;
    if (!sendsKeys())
        return PasteOutcome::impossible;
    if (text.empty())
        return keyboardEvents_->postDelete() ? PasteOutcome::fetched : PasteOutcome::impossible;
    return pasteboard_->paste(
        text, [this] { return keyboardEvents_->postPaste(); }, deadline);
}

void WaylandBackEnd::withdrawPaste() {
    if (pasteboard_)
        pasteboard_->takeBack();
}

} // namespace quillmoth::platform
