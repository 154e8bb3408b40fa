#pragma once

#include "Platform/Linux/Sway/SwayBackEnd.h"
#include "Platform/Qt/QtPanelFocus.h"
#include "Platform/Qt/QtPasteboard.h"
#include "tests/desktop/matrix/MatrixSession.h"
#include "tests/desktop/support/VirtualDesktop.h"
#include "tests/desktop/wayland/SwaySession.h"

#include <QApplication>

namespace quillmoth::test {

/// sway without a screen, with an X server beside it for those that have no other way.
class SwayMatrixSession final : public MatrixSession, private UserHands {
public:
    SwayMatrixSession();

    std::string name() const override { return "sway"; }

    std::string homeDirectory() const override { return desktop_.homeDirectory(); }

    platform::DesktopBackEnd& backEnd() override { return *backEnd_; }

    UserHands& hands() override { return *this; }

    ChildOptions programOptions() override;

    bool hasWindows() override { return SwaySession::hasWindows(); }

    std::optional<std::string> frontTitle() override { return SwaySession::frontTitle(); }

    DesktopRectangle frontPlace() override { return SwaySession::frontRectangle(); }

    std::string onClipboard(const std::string& mediaType) override;
    ChildProcess copyRich(const std::string& text, const std::string& html) override;
    void showPanel() override;

    void saveScreenshot(const std::string& path) override { SwaySession::saveScreenshot(path); }

private:
    void pressKey(int key) override { sway_.input().pressKey(key); }

    void releaseKey(int key) override { sway_.input().releaseKey(key); }

    void movePointer(int x, int y) override { sway_.input().movePointer(x, y); }

    void pressButton() override { sway_.input().pressButton(); }

    void releaseButton() override { sway_.input().releaseButton(); }

    VirtualDesktop desktop_;
    SwaySession sway_;
    int argumentCount_ = 1;
    char name_[5] = "test";
    char* arguments_[2] = {name_, nullptr};
    QApplication application_;
    platform::QtPasteboard toolkitsPasteboard_;
    platform::QtPanelFocus toolkitsFocus_;
    std::unique_ptr<platform::SwayBackEnd> backEnd_;
};

} // namespace quillmoth::test
