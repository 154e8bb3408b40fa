#include "Platform/Linux/Wayland/WaylandBackEnd.h"

#include <QClipboard>
#include <QGuiApplication>
#include <utility>
#include <xkbcommon/xkbcommon-keysyms.h>

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

PasteHabit WaylandBackEnd::pasteHabit(const OtherFocus& hasOtherFocus) {
    if (isFrontTerminal(hasOtherFocus))
        return PasteHabit::none;
    const PasteHabit habit = pasteHabitByName(frontName());
    const auto process = frontProcess();
    return habit == PasteHabit::usual && process && usesTk(*process) ? PasteHabit::tk : habit;
}

std::optional<std::string> WaylandBackEnd::selectionInsteadOfCopy(const OtherFocus& hasOtherFocus) {
    return copiesOtherwise(pasteHabit(hasOtherFocus)) ? std::optional(primarySelection().value_or(""))
                                                      : std::nullopt;
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
    const PasteHabit habit = pasteHabit(hasOtherFocus);
    if (habit == PasteHabit::none)
        return PasteOutcome::terminal;
    if (!sendsKeys())
        return PasteOutcome::impossible;
    if (text.empty()) {
        const bool isSent =
            !copiesOtherwise(habit) && keyboardEvents_->postKeys({{.keysym = XKB_KEY_Delete}});
        return isSent ? PasteOutcome::fetched : PasteOutcome::impossible;
    }
    return pasteboard_->paste(text, keysFor(habit), deadline);
}

WaylandPasteboard::PasteKeys WaylandBackEnd::keysFor(PasteHabit habit) {
    using Key = WaylandKeyboardEvents::Key;
    const auto sending = [this](std::vector<Key> keys) {
        return [this, keys = std::move(keys)] { return keyboardEvents_->postKeys(keys); };
    };
    const std::string selected = habit != PasteHabit::usual ? primarySelection().value_or("") : "";
    switch (habit) {
    case PasteHabit::emacs: {
        WaylandPasteboard::PasteKeys keys{.paste = sending({{XKB_KEY_y, true}})};
        if (!selected.empty()) {
            keys.selected = selected;
            keys.cut = sending({{XKB_KEY_w, true}});
            keys.undo = sending({{XKB_KEY_x, true}, {XKB_KEY_u}});
        }
        return keys;
    }
    case PasteHabit::vim:
        // To the normal mode from any other, to what was selected last, and the register of the clipboard.
        return {.paste = sending({{XKB_KEY_backslash, true},
                                  {XKB_KEY_n, true},
                                  {XKB_KEY_g},
                                  {XKB_KEY_v},
                                  {XKB_KEY_quotedbl},
                                  {XKB_KEY_plus},
                                  {XKB_KEY_p}})};
    case PasteHabit::tk:
        if (!selected.empty())
            return {.paste = sending({{XKB_KEY_Delete}, {XKB_KEY_v, true}})};
        break;
    case PasteHabit::usual:
    case PasteHabit::none:
        break;
    }
    return {.paste = sending({{XKB_KEY_v, true}})};
}

void WaylandBackEnd::withdrawPaste() {
    if (pasteboard_)
        pasteboard_->takeBack();
}

} // namespace quillmoth::platform
