#include "Quillmoth/Main/X11Desktop.h"

#include "Foundation/Log.h"
#include "Platform/Linux/X11/X11SelectionPaste.h"

#include <QApplication>
#include <QWidget>
#include <utility>

namespace quillmoth {

namespace {

/// Menus and a recorder of shortcuts grab it.
void freeToolkitsKeyboard() {
    const QWidget* former = nullptr;
    for (QWidget* popUp = QApplication::activePopupWidget(); popUp != nullptr && popUp != former;
         popUp = QApplication::activePopupWidget()) {
        former = popUp;
        popUp->close();
    }
    if (QWidget* grabber = QWidget::keyboardGrabber())
        grabber->releaseKeyboard();
}

} // namespace

std::unique_ptr<X11Desktop> X11Desktop::create() {
    auto x11 = platform::X11BackEnd::create();
    if (x11)
        return std::unique_ptr<X11Desktop>(new X11Desktop(std::move(*x11)));
    logLine("Without an X server: " + x11.error().description);
    return nullptr;
}

X11Desktop::X11Desktop(std::unique_ptr<platform::X11BackEnd> x11)
    : x11_(std::move(x11)),
      hotKeys_(x11_->hotKeyCenter(), x11_->keyboardLayout(),
               {.windowManagerName = [this] { return x11_->hotKeyProbe().windowManagerName(); },
                .isTaken =
                    [this](std::uint32_t keyCode, std::uint32_t carbonModifiers) {
                        return x11_->hotKeyProbe().isShortcutTaken(keyCode, carbonModifiers);
                    }}) {
    x11_->panelFocus().setFreeToolkit(freeToolkitsKeyboard);
    x11_->keyboardEvents().setVeto([this] { return !pasteboard_.isKept(); });
}

platform::PasteOutcome X11Desktop::paste(const std::string& text,
                                         std::chrono::steady_clock::time_point deadline,
                                         const OtherFocus& hasOtherFocus) {
    return platform::X11SelectionPaste(front(), x11_->keyboardEvents(), pasteboard_, hasOtherFocus)
        .paste(text, deadline);
}

Subscription X11Desktop::onCompositingChange(std::function<void()> subscriber) {
    return x11_->screen().onCompositionChange([subscriber = std::move(subscriber)](bool) { subscriber(); });
}

} // namespace quillmoth
