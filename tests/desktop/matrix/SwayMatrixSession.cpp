#include "tests/desktop/matrix/SwayMatrixSession.h"

#include "tests/desktop/support/WaitFor.h"

#include <stdexcept>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

/// Before the toolkit looks.
int& onWayland(int& argumentCount) {
    qputenv("QT_QPA_PLATFORM", "wayland");
    return argumentCount;
}

} // namespace

SwayMatrixSession::SwayMatrixSession()
    : desktop_({.windowManager = "", .accessibility = true}),
      application_(onWayland(argumentCount_), arguments_) {
    auto made =
        platform::SwayBackEnd::create({.pasteboard = toolkitsPasteboard_, .panelFocus = toolkitsFocus_});
    if (!made)
        throw std::runtime_error(made.error().description);
    backEnd_ = std::move(*made);
}

ChildOptions SwayMatrixSession::programOptions() {
    ChildOptions options = commonProgramOptions();
    // Each takes what it takes by itself.
    options.environment.insert(
        options.environment.end(),
        {{"DISPLAY", sway_.display()}, {"QT_QPA_PLATFORM", "wayland;xcb"}, {"XDG_CURRENT_DESKTOP", "sway"}});
    return options;
}

std::string SwayMatrixSession::onClipboard(const std::string& mediaType) {
    // GTK writes down only ASCII where no charset is named.
    return SwaySession::clipboard(false, mediaType == "text/plain" ? "text/plain;charset=utf-8" : mediaType);
}

ChildProcess SwayMatrixSession::copyRich(const std::string& text, const std::string& html) {
    ChildProcess owner({CLIPBOARD_OWNER, text, html, "--wayland"});
    if (!holdsWithin(10s, [&] { return onClipboard("text/plain") == text; }))
        throw std::runtime_error("nothing comes onto the clipboard: " + owner.output());
    return owner;
}

void SwayMatrixSession::showPanel() {
    platform::PanelFocus& panel = backEnd_->panelFocus();
    panel.prepare();
    panel.acquire(0);
    if (!holdsWithin(5s, [&] { return panel.isHeld(); }))
        throw std::runtime_error("the panel does not get the keyboard");
    panel.release();
}

} // namespace quillmoth::test
