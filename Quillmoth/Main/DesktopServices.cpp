#include "Quillmoth/Main/DesktopServices.h"

#include "Foundation/Log.h"
#include "Platform/Linux/Desktop/DesktopHotKeyCenter.h"
#include "Platform/Linux/Desktop/SchemeHandler.h"
#include "Platform/Linux/X11/Keys/X11Keycodes.h"
#include "Platform/Linux/X11/Selection/X11Pasteboard.h"
#include "Platform/Linux/X11/X11BackEnd.h"
#include "Platform/Linux/X11/X11SelectionPaste.h"
#include "Platform/Posix/OwnFolder.h"
#include "Platform/Qt/FileWatch.h"
#include "Quillmoth/Settings/SettingsModel.h"

#include <QApplication>
#include <QEventLoop>
#include <QTimer>
#include <QWidget>

#include <filesystem>
#include <utility>

namespace quillmoth {

namespace {

// Stands for the desktop itself, which is in front where no window is the active one.
constexpr std::int64_t kDesktopProcess = 1;

// How long the end of the program waits for the keyring.
constexpr int kKeyringMilliseconds = 2000;

std::unique_ptr<platform::X11BackEnd> makeX11() {
    auto x11 = platform::X11BackEnd::create();
    if (x11)
        return std::move(*x11);
    logLine("Without an X server: " + x11.error().description);
    return nullptr;
}

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

std::unique_ptr<platform::HotKeyCenter> makeHotKeys(platform::X11BackEnd& x11) {
    return std::make_unique<platform::DesktopHotKeyCenter>(
        x11.hotKeyCenter(), x11.keyboardLayout(),
        platform::DesktopHotKeyCenter::Desktop{
            .windowManagerName = [&x11] { return x11.hotKeyProbe().windowManagerName(); },
            .isTaken =
                [&x11](std::uint32_t keyCode, std::uint32_t carbonModifiers) {
                    return x11.hotKeyProbe().isShortcutTaken(keyCode, carbonModifiers);
                }});
}

} // namespace

DesktopServices::DesktopServices()
    : fileDefaults(platform::defaultsFilePath(), fileWriter, platform::watchFiles),
      userDefaults(fileDefaults, secretStore,
                   [this](const std::string& key, const std::function<void(bool)>& completion) {
                       fileDefaults.whenWritten(key, [this, completion](bool isWritten) {
                           mainQueue.async([completion, isWritten] { completion(isWritten); });
                       });
                   }),
      x11_(makeX11()), desktopHotKeys_(x11_ ? makeHotKeys(*x11_) : nullptr),
      workspace(mainQueue, frontHooks()), accessibility(accessibilityHooks()) {
    // Before anybody reads or writes there.
    platform::putFolderInOrder(platform::documentsFolder() + "/Quillmoth", userDefaults);
    platform::putFolderInOrder(std::filesystem::path(platform::defaultsFilePath()).parent_path().string(),
                               userDefaults);
    // The first question to it comes soon; it connects meanwhile.
    accessibility.start();
    if (!x11_)
        return;
    selectionPasteboard_ = std::make_unique<platform::X11Pasteboard>();
    x11_->panelFocus().setFreeToolkit(freeToolkitsKeyboard);
    x11_->keyboardEvents().setVeto([this] { return !selectionPasteboard_->isKept(); });
}

DesktopServices::~DesktopServices() {
    waitForKeyring();
}

/// A key that was typed just now is on its way there.
void DesktopServices::waitForKeyring() {
    if (!userDefaults.isSavingKey())
        return;
    QEventLoop loop;
    const Subscription change = userDefaults.onChange([&] {
        if (!userDefaults.isSavingKey())
            loop.quit();
    });
    QTimer::singleShot(kKeyringMilliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

std::optional<std::int64_t> DesktopServices::frontProcess() {
    if (x11_)
        return x11_->frontApplication().processIdentifier().value_or(kDesktopProcess);
    // The panel's own window is in front while it is open, and for a moment behind that none is.
    const auto active = accessibility.activeProcess();
    if (active)
        lastFront_ = active;
    return lastFront_.value_or(kDesktopProcess);
}

platform::QtWorkspace::Front DesktopServices::frontHooks() {
    if (!x11_)
        return {.process = [this] { return frontProcess(); }};
    return {.process = [this] { return frontProcess(); },
            .name = [this] { return x11_->frontApplication().name(); },
            .primarySelection = [this] { return x11_->frontApplication().primarySelection(); },
            .selectionInsteadOfCopy =
                [this] {
                    return x11_->frontApplication().selectionInsteadOfCopy([this](std::int64_t process) {
                        return accessibility.hasFieldBesideTerminal(process);
                    });
                }};
}

platform::AtSpiHooks DesktopServices::accessibilityHooks() {
    return {
        .frontProcess = [this] { return frontProcess(); },
        .frontPrimarySelection = [this] { return workspace.frontmostPrimarySelection(); },
        .pasteText = [this](const std::string& text, auto deadline) { return paste(text, deadline); },
        .withdrawPaste =
            [this] {
                if (selectionPasteboard_)
                    selectionPasteboard_->takeBack();
            },
        .hasConsent = [this] { return SettingsModel(userDefaults).accessibilityConsent().value_or(false); },
        .askForConsent =
            [this] {
                // Once answered, it is for the settings to take the answer back.
                if (askForConsent_ && !SettingsModel(userDefaults).accessibilityConsent())
                    askForConsent_();
            },
    };
}

platform::PasteOutcome DesktopServices::paste(const std::string& text,
                                              std::chrono::steady_clock::time_point deadline) {
    if (!selectionPasteboard_)
        return platform::PasteOutcome::impossible;
    return platform::X11SelectionPaste(
               x11_->frontApplication(), x11_->keyboardEvents(), *selectionPasteboard_,
               [this](std::int64_t process) { return accessibility.hasFieldBesideTerminal(process); })
        .paste(text, deadline);
}

platform::Platform DesktopServices::platform(platform::PanelWindows& panelWindows) {
    platform::HotKeyCenter& noHotKeys = noHotKeyCenter_;
    platform::KeyboardEvents& noEvents = noKeyboardEvents_;
    platform::KeyboardLayout& noLayout = noKeyboardLayout_;
    platform::Pasteboard& toolkitsPasteboard = toolkitPasteboard_;
    return {
        .mainQueue = mainQueue,
        .operationQueues = operationQueues,
        .urlSessions = urlSessions,
        .pasteboard = selectionPasteboard_ ? *selectionPasteboard_ : toolkitsPasteboard,
        .accessibility = accessibility,
        .keyboardEvents = x11_ ? x11_->keyboardEvents() : noEvents,
        .hotKeyCenter = desktopHotKeys_ ? *desktopHotKeys_ : noHotKeys,
        .keyboardLayout = x11_ ? x11_->keyboardLayout() : noLayout,
        .workspace = workspace,
        .userDefaults = userDefaults,
        .documents = documents,
        .bundle = bundle,
        .clock = clock,
        .uuidSource = uuidSource,
        .panelWindows = panelWindows,
        .statusItems = statusItems,
        .application = application,
    };
}

platform::PanelFocus& DesktopServices::panelFocus() {
    if (x11_)
        return x11_->panelFocus();
    return ordinaryFocus_;
}

bool DesktopServices::isCompositing() const {
    return !x11_ || x11_->screen().isComposited();
}

Subscription DesktopServices::onCompositingChange(std::function<void()> subscriber) {
    if (!x11_)
        return {};
    return x11_->screen().onCompositionChange([subscriber = std::move(subscriber)](bool) { subscriber(); });
}

std::optional<std::uint16_t> DesktopServices::virtualKeyCode(std::uint32_t nativeScanCode) const {
    return x11_ ? platform::virtualKeyCodeForKeycode(nativeScanCode) : std::nullopt;
}

void DesktopServices::finishLaunching() {
    // Nobody opens such an address within the first second.
    mainQueue.asyncAfter(platform::MainQueue::Seconds(1), [] {
        platform::offerSchemeHandler(QCoreApplication::applicationFilePath().toStdString());
    });
}

void DesktopServices::prepareForQuestions() {
    // Behind the first picture, and before anybody has typed a question.
    constexpr platform::MainQueue::Seconds kBehindThePicture{0.1};
    if (!std::exchange(isPrepared_, true))
        mainQueue.asyncAfter(kBehindThePicture, [this] { urlSessions.prepare(); });
    mainQueue.asyncAfter(kBehindThePicture, [this] { userDefaults.prepareKey(); });
}

} // namespace quillmoth
