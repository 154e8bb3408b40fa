#pragma once

#include "Platform/PanelWindow.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace quillmoth {

/// What a window system with such panels is to be told of every one. Here each back end makes them in its own
/// way, and nothing reads this.
struct PanelProperties {
    static constexpr double kContentRect[] = {0, 0, 612, 90};
    /// Titled, closable, resizable, non-activating panel, full-size content view.
    static constexpr std::uint32_t kStyleMask = 0x808B;
    static constexpr std::uint32_t kBackingBuffered = 2;
    static constexpr bool kDefer = false;
    static constexpr bool kFloatingPanel = true;
    static constexpr int kLevel = 3;
    /// Full-screen auxiliary, added to what the window has by itself.
    static constexpr std::uint32_t kAddedCollectionBehavior = 0x100;
    static constexpr int kTitleHidden = 1;
    static constexpr bool kTitlebarAppearsTransparent = true;
    static constexpr bool kClearBackground = true;
    static constexpr bool kHasShadow = false;
    static constexpr bool kMovableByWindowBackground = true;
    static constexpr bool kReleasedWhenClosed = false;
    static constexpr int kUtilityWindowAnimation = 4;
    static constexpr bool kStandardButtonsHidden = true;
};

/// A panel that floats over other applications and closes when the user turns to something else. Main thread.
class DefaultFloatingPanel {
public:
    /// Makes the window, hidden.
    explicit DefaultFloatingPanel(platform::PanelWindows& windows);
    virtual ~DefaultFloatingPanel() = default;
    DefaultFloatingPanel(const DefaultFloatingPanel&) = delete;
    DefaultFloatingPanel& operator=(const DefaultFloatingPanel&) = delete;

    [[nodiscard]] static bool canBecomeKeyWindow() { return true; }

    [[nodiscard]] static bool canBecomeMainWindow() { return true; }

    /// The user, or the program on purpose, has turned away: closes.
    virtual void resignMainWindow();

    void setTitle(const std::string& title) { window_->setTitle(title); }

    void close() { window_->close(); }

    void center() { window_->center(); }

    void setFrameUsingName(std::string_view name) { window_->setFrameUsingName(name); }

    void saveFrameUsingName(std::string_view name) { window_->saveFrameUsingName(name); }

    void orderFront() { window_->orderFront(); }

    void makeKeyWindow() { window_->makeKeyWindow(); }

private:
    std::unique_ptr<platform::PanelWindow> window_;
};

/// The program's one panel: it knows whether it is open and pinned, and keeps its frame.
class FloatingViewPanel final : public DefaultFloatingPanel {
public:
    static constexpr std::string_view kFrameName = "savedFrame";

    explicit FloatingViewPanel(platform::PanelWindows& windows) : DefaultFloatingPanel(windows) {}

    /// Nothing at all while pinned; otherwise saves the frame and closes.
    void resignMainWindow() override;

    /// Opens again where it was, or only takes the keyboard where it is open, as a pinned one is.
    void comeBack();

    bool isOpen = false;
    bool isOntop = false;
};

} // namespace quillmoth
