#include "Quillmoth/Assistant/FloatingViewPanel.h"

namespace quillmoth {

namespace {

// Titled, closable, resizable, non-activating panel, full-size content view.
constexpr std::uint32_t kStyleMask = 0x808B;
constexpr int kFloatingLevel = 3;
constexpr std::uint32_t kFullScreenAuxiliary = 0x100;
constexpr int kTitleHidden = 1;
constexpr int kUtilityWindowAnimation = 4;

} // namespace

platform::PanelProperties
DefaultFloatingPanel::properties(const platform::PanelProperties::Rectangle& contentRect,
                                 std::uint32_t backing, bool defer) {
    return {
        .contentRect = contentRect,
        .styleMask = kStyleMask,
        .backing = backing,
        .defer = defer,
        .floatingPanel = true,
        .level = kFloatingLevel,
        .addedCollectionBehavior = kFullScreenAuxiliary,
        .titleVisibility = kTitleHidden,
        .titlebarAppearsTransparent = true,
        .clearBackground = true,
        .hasShadow = false,
        .movableByWindowBackground = true,
        .releasedWhenClosed = false,
        .animationBehavior = kUtilityWindowAnimation,
        .standardButtonsHidden = true,
    };
}

DefaultFloatingPanel::DefaultFloatingPanel(platform::PanelWindows& windows,
                                           const platform::PanelProperties::Rectangle& contentRect,
                                           std::uint32_t backing, bool defer)
    : window_(windows.makePanel(properties(contentRect, backing, defer))) {
    window_->setResignMainHandler([this] { resignMainWindow(); });
}

void DefaultFloatingPanel::resignMainWindow() {
    close();
}

FloatingViewPanel::FloatingViewPanel(platform::PanelWindows& windows, bool open, bool onTop,
                                     const platform::PanelProperties::Rectangle& contentRect,
                                     std::uint32_t backing, bool defer)
    : DefaultFloatingPanel(windows, contentRect, backing, defer), isOpen(open), isOntop(onTop) {}

void FloatingViewPanel::resignMainWindow() {
    if (isOntop)
        return;
    saveFrameUsingName(kFrameName);
    DefaultFloatingPanel::resignMainWindow();
    isOpen = false;
    close();
}

} // namespace quillmoth
