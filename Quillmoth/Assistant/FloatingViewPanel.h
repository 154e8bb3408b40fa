#pragma once

#include "Platform/PanelWindow.h"

#include <memory>
#include <string>
#include <string_view>

namespace quillmoth {

/// A panel that floats over other applications and closes when the user turns to something else. Main thread.
class DefaultFloatingPanel {
public:
    /// Makes the window, hidden.
    DefaultFloatingPanel(platform::PanelWindows& windows,
                         const platform::PanelProperties::Rectangle& contentRect, std::uint32_t backing,
                         bool defer);
    virtual ~DefaultFloatingPanel() = default;
    DefaultFloatingPanel(const DefaultFloatingPanel&) = delete;
    DefaultFloatingPanel& operator=(const DefaultFloatingPanel&) = delete;

    /// The settings of every such panel.
    static platform::PanelProperties properties(const platform::PanelProperties::Rectangle& contentRect,
                                                std::uint32_t backing, bool defer);

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

    FloatingViewPanel(platform::PanelWindows& windows, bool isOpen, bool isOntop,
                      const platform::PanelProperties::Rectangle& contentRect, std::uint32_t backing,
                      bool defer);

    /// Nothing at all while pinned; otherwise saves the frame and closes.
    void resignMainWindow() override;

    bool isOpen = false;
    bool isOntop = false;
};

} // namespace quillmoth
