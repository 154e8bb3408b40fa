#include "Quillmoth/Assistant/FloatingViewPanel.h"

namespace quillmoth {

DefaultFloatingPanel::DefaultFloatingPanel(platform::PanelWindows& windows) : window_(windows.makePanel()) {
    window_->setResignMainHandler([this] { resignMainWindow(); });
}

void DefaultFloatingPanel::resignMainWindow() {
    close();
}

void FloatingViewPanel::resignMainWindow() {
    if (isOntop)
        return;
    saveFrameUsingName(kFrameName);
    DefaultFloatingPanel::resignMainWindow();
    isOpen = false;
    close();
}

void FloatingViewPanel::comeBack() {
    if (!isOpen) {
        setFrameUsingName(kFrameName);
        orderFront();
    }
    makeKeyWindow();
    isOpen = true;
}

} // namespace quillmoth
