#include "Quillmoth/Main/DesktopServices.h"

#include "Foundation/Log.h"
#include "Platform/Linux/Desktop/KeysEntry.h"
#include "Platform/Linux/Desktop/SchemeHandler.h"
#include "Platform/Linux/Gnome/GnomeBackEnd.h"
#include "Platform/Linux/Gnome/GnomeKeySettings.h"
#include "Platform/Linux/KWin/KWinBackEnd.h"
#include "Platform/Linux/Shared/Keycodes.h"
#include "Platform/Linux/Sway/SwayBackEnd.h"
#include "Platform/Linux/Wayland/LayerStage.h"
#include "Platform/Linux/Wayland/PlainBackEnd.h"
#include "Platform/Posix/OwnFolder.h"
#include "Platform/Qt/FileWatch.h"
#include "Quillmoth/Main/X11Desktop.h"
#include "Quillmoth/Settings/SettingsModel.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <filesystem>
#include <utility>

namespace quillmoth {

namespace {

// Stands for the desktop itself, which is in front where no window is the active one.
constexpr std::int64_t kDesktopProcess = 1;

// How long the end of the program waits for the keyring.
constexpr int kKeyringMilliseconds = 2000;

} // namespace

DesktopServices::DesktopServices()
    : fileDefaults(platform::defaultsFilePath(), fileWriter, platform::watchFiles),
      userDefaults(fileDefaults, secretStore,
                   [this](const std::string& key, const std::function<void(bool)>& completion) {
                       fileDefaults.whenWritten(key, [this, completion](bool isWritten) {
                           mainQueue.async([completion, isWritten] { completion(isWritten); });
                       });
                   }),
      desktop_(makeDesktop()), workspace(mainQueue, frontHooks()), accessibility(accessibilityHooks()) {
    // Before anybody reads or writes there.
    platform::putFolderInOrder(platform::documentsFolder() + "/Quillmoth", userDefaults);
    platform::putFolderInOrder(std::filesystem::path(platform::defaultsFilePath()).parent_path().string(),
                               userDefaults);
    // The first question to it comes soon; it connects meanwhile.
    accessibility.start();
}

std::unique_ptr<platform::DesktopBackEnd> DesktopServices::makeDesktop() {
    const platform::WaylandBackEnd::Toolkit toolkit{.pasteboard = toolkitPasteboard_,
                                                    .panelFocus = ordinaryFocus_};
    auto sway = platform::SwayBackEnd::create(toolkit);
    if (sway)
        return std::move(*sway);
    logLine("Without sway: " + sway.error().description);
    auto kwin = platform::KWinBackEnd::create(
        toolkit, [] { platform::offerKeysEntry(QCoreApplication::applicationFilePath().toStdString()); });
    if (kwin)
        return std::move(*kwin);
    logLine("Without KWin: " + kwin.error().description);
    auto gnome = platform::GnomeBackEnd::create(
        {.pasteboard = toolkitPasteboard_,
         .panelFocus = ordinaryFocus_,
         .activeProcess = [this] { return accessibility.activeProcess(); },
         .toggleCommand = QCoreApplication::applicationFilePath().toStdString() + " --toggle"});
    if (gnome)
        return std::move(*gnome);
    logLine("Without GNOME: " + gnome.error().description);
    auto plain = platform::PlainBackEnd::create(toolkit, [this] { return accessibility.activeProcess(); });
    if (plain)
        return std::move(*plain);
    logLine("Without protocols for panel and clipboard: " + plain.error().description);
    return X11Desktop::create();
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
    if (desktop_)
        return desktop_->frontProcess().value_or(kDesktopProcess);
    // The panel's own window is in front while it is open, and for a moment behind that none is.
    const auto active = accessibility.activeProcess();
    if (active)
        lastFront_ = active;
    return lastFront_.value_or(kDesktopProcess);
}

platform::DesktopBackEnd::OtherFocus DesktopServices::otherFocus() {
    return [this](std::int64_t process) { return accessibility.hasFieldBesideTerminal(process); };
}

platform::QtWorkspace::Front DesktopServices::frontHooks() {
    if (!desktop_)
        return {.process = [this] { return frontProcess(); }};
    return {.process = [this] { return frontProcess(); },
            .name = [this] { return desktop_->frontName(); },
            .primarySelection = [this] { return desktop_->primarySelection(); },
            .selectionInsteadOfCopy = [this] { return desktop_->selectionInsteadOfCopy(otherFocus()); }};
}

platform::AtSpiHooks DesktopServices::accessibilityHooks() {
    return {
        .frontProcess = [this] { return frontProcess(); },
        .focusComesBackBy = [this] { return focusComesBackBy_; },
        .frontPrimarySelection = [this] { return workspace.frontmostPrimarySelection(); },
        .pasteText =
            [this](const std::string& text, auto deadline) {
                return desktop_ ? desktop_->paste(text, deadline, otherFocus())
                                : platform::PasteOutcome::impossible;
            },
        .withdrawPaste =
            [this] {
                if (desktop_)
                    desktop_->withdrawPaste();
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

platform::Platform DesktopServices::platform(platform::PanelWindows& panelWindows) {
    platform::HotKeyCenter& noHotKeys = noHotKeyCenter_;
    platform::KeyboardEvents& noEvents = noKeyboardEvents_;
    platform::KeyboardLayout& noLayout = noKeyboardLayout_;
    platform::Pasteboard& toolkitsPasteboard = toolkitPasteboard_;
    return {
        .mainQueue = mainQueue,
        .operationQueues = operationQueues,
        .urlSessions = urlSessions,
        .pasteboard = desktop_ ? desktop_->pasteboard() : toolkitsPasteboard,
        .accessibility = accessibility,
        .keyboardEvents = desktop_ ? desktop_->keyboardEvents() : noEvents,
        .hotKeyCenter = desktop_ ? desktop_->hotKeyCenter() : noHotKeys,
        .keyboardLayout = desktop_ ? desktop_->keyboardLayout() : noLayout,
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
    if (desktop_)
        return desktop_->panelFocus();
    return ordinaryFocus_;
}

QWidget* DesktopServices::panelStage() {
    return dynamic_cast<platform::LayerStage*>(&panelFocus());
}

platform::PanelPlacement* DesktopServices::panelPlacement() {
    return desktop_ ? desktop_->placement() : nullptr;
}

std::vector<platform::DesktopOffer> DesktopServices::offers() {
    return desktop_ ? desktop_->offers() : std::vector<platform::DesktopOffer>();
}

std::optional<HeldToggle::Repeat> DesktopServices::commandRepeat() const {
    if (desktop_ && !desktop_->isHotKeyACommand())
        return std::nullopt;
    // GNOME's settings, or else what is usual.
    const platform::KeyRepeat repeat = platform::keyRepeat();
    return HeldToggle::Repeat{.delay = repeat.delay, .interval = repeat.interval};
}

bool DesktopServices::isCompositing() const {
    return !desktop_ || desktop_->isCompositing();
}

Subscription DesktopServices::onCompositingChange(std::function<void()> subscriber) {
    return desktop_ ? desktop_->onCompositingChange(std::move(subscriber)) : Subscription();
}

std::optional<std::uint16_t> DesktopServices::virtualKeyCode(std::uint32_t nativeScanCode) const {
    return desktop_ ? platform::virtualKeyCodeForKeycode(nativeScanCode) : std::nullopt;
}

Subscription DesktopServices::inhibitShortcuts(std::uint64_t window) {
    return desktop_ ? desktop_->inhibitShortcuts(window) : Subscription();
}

void DesktopServices::finishLaunching() {
    // Nobody opens such an address within the first second.
    mainQueue.asyncAfter(platform::MainQueue::Seconds(1), [] {
        platform::offerSchemeHandler(QCoreApplication::applicationFilePath().toStdString());
    });
}

void DesktopServices::panelClosed() {
    if (desktop_)
        focusComesBackBy_ = std::chrono::steady_clock::now() + desktop_->focusReturnTime();
}

void DesktopServices::prepareForQuestions() {
    // Behind the first picture, and before anybody has typed a question.
    constexpr platform::MainQueue::Seconds kBehindThePicture{0.1};
    if (!std::exchange(isPrepared_, true))
        mainQueue.asyncAfter(kBehindThePicture, [this] { urlSessions.prepare(); });
    mainQueue.asyncAfter(kBehindThePicture, [this] { userDefaults.prepareKey(); });
}

} // namespace quillmoth
