#pragma once

#include "Quillmoth/Main/X11Desktop.h"
#include "tests/desktop/matrix/MatrixSession.h"
#include "tests/desktop/support/SessionTest.h"

namespace quillmoth::test {

/// An X server with a window manager.
class X11MatrixSession final : public MatrixSession, private UserHands {
public:
    explicit X11MatrixSession(const std::string& windowManager);

    VirtualDesktop& desktop() { return place_.desktop; }

    std::string name() const override { return place_.desktop.windowManager(); }

    std::string homeDirectory() const override { return place_.desktop.homeDirectory(); }

    platform::DesktopBackEnd& backEnd() override { return *backEnd_; }

    UserHands& hands() override { return *this; }

    ChildOptions programOptions() override;

    bool isWayland() const override { return false; }

    bool hasWindows() override { return !windows().managedWindows().empty(); }

    std::optional<std::string> frontTitle() override;

    DesktopRectangle frontPlace() override { return windows().geometry(windows().activeWindow()); }

    std::string onClipboard(const std::string& mediaType) override;
    ChildProcess copyRich(const std::string& text, const std::string& html) override;

    void saveScreenshot(const std::string& path) override { place_.desktop.saveScreenshot(path); }

private:
    void pressKey(int key) override { place_.desktop.input().pressKey(key); }

    void releaseKey(int key) override { place_.desktop.input().releaseKey(key); }

    void movePointer(int x, int y) override { place_.desktop.input().movePointer(x, y); }

    void pressButton() override { place_.desktop.input().pressButton(1); }

    void releaseButton() override { place_.desktop.input().releaseButton(1); }

    [[nodiscard]] DesktopWindows& windows() const { return place_.desktop.windows(); }

    ApplicationDesktop<> place_;
    std::unique_ptr<quillmoth::X11Desktop> backEnd_;
};

} // namespace quillmoth::test
