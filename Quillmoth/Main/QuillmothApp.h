#pragma once

#include "Foundation/Subscription.h"
#include "KeyboardShortcuts/Center.h"
#include "MarkdownUI/Qt/MarkdownServices.h"
#include "Platform/Linux/Desktop/InstanceRequest.h"
#include "Quillmoth/Application/AppDelegate.h"
#include "Quillmoth/Application/HeldToggle.h"
#include "Quillmoth/Assistant/FloatingViewController.h"
#include "Quillmoth/Highlighting/SplashCodeSyntaxHighlighter.h"
#include "Quillmoth/Main/DesktopServices.h"
#include "Quillmoth/Main/ProgramWindows.h"
#include "Quillmoth/Shell/Panel/QtPanelWindow.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace quillmoth {

/// The running program: the application delegate on the services of this desktop, and the windows. Made once,
/// on the main thread, after the QApplication.
class QuillmothApp {
public:
    QuillmothApp();
    ~QuillmothApp();
    QuillmothApp(const QuillmothApp&) = delete;
    QuillmothApp& operator=(const QuillmothApp&) = delete;

    void finishLaunching();

    /// What another start of the program, the launcher or the command line asks for.
    void carryOut(const platform::InstanceRequest& request);

    /// What this start itself asks for.
    void carryOutFirst(const platform::InstanceRequest& request);

    /// Returns when all that was changed so far is on the disk, or has failed.
    void finishWriting();

private:
    [[nodiscard]] std::unique_ptr<PanelContent> makePanelContent();
    void openURLs(const std::vector<std::string>& urls);
    void askForPreset(const std::string& url, const PromptData& preset);
    /// Returns what is to be told where the link is not opened.
    [[nodiscard]] QString openFromAnswer(const std::string& url);
    /// Opens the window whose route the URL is.
    void openRoute(const std::string& url);
    void showPanel();
    [[nodiscard]] std::function<void()> stepAsideForPassword();
    void comeBackFromPassword();
    /// Which images load by themselves.
    [[nodiscard]] std::pair<bool, std::vector<std::string>> imageDefaults();

    DesktopServices services_;
    highlighting::SplashCodeSyntaxHighlighter codeHighlighter_;
    markdown::MarkdownServices markdown_;
    Subscription imageSettings_;
    QtPanelWindows panelWindows_;
    const platform::Platform platform_;
    KeyboardShortcuts::Center shortcuts_;
    AppDelegate _appDelegate;
    std::shared_ptr<FloatingViewController> controller_;
    ProgramWindows windows_;
    HeldToggle heldToggle_;
};

} // namespace quillmoth
