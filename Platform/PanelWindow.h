#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace quillmoth::platform {

/// One window that floats over other applications and takes the keyboard without taking their activation.
/// Main thread.
class PanelWindow {
public:
    virtual ~PanelWindow() = default;

    virtual void setTitle(const std::string& title) = 0;
    virtual void center() = 0;
    /// False where no frame was saved under the name. A frame that is on no screen any more is brought back.
    virtual bool setFrameUsingName(std::string_view name) = 0;
    virtual void saveFrameUsingName(std::string_view name) = 0;
    virtual void orderFront() = 0;
    virtual void makeKeyWindow() = 0;
    /// Hides the window and gives the keyboard back before it returns. Does nothing on a hidden window.
    virtual void close() = 0;

    /// `handler` runs when the user has turned to something else. Unless it closes the window, the window
    /// stays, without the keyboard, until it is clicked.
    virtual void setResignMainHandler(std::function<void()> handler) = 0;
};

class PanelWindows {
public:
    virtual ~PanelWindows() = default;

    virtual std::unique_ptr<PanelWindow> makePanel() = 0;
};

} // namespace quillmoth::platform
