#pragma once

#include "Platform/Curl/CurlURLSessions.h"
#include "Platform/DesktopBackEnd.h"
#include "Platform/Linux/AtSpi/AtSpiAccessibility.h"
#include "Platform/Linux/Keyring/KeyringUserDefaults.h"
#include "Platform/Linux/Keyring/QtKeychainStore.h"
#include "Platform/Linux/Tray/QtStatusItems.h"
#include "Platform/Linux/Unavailable/UnavailableServices.h"
#include "Platform/Platform.h"
#include "Platform/Posix/FileDocuments.h"
#include "Platform/Posix/FileUserDefaults.h"
#include "Platform/Posix/FileWriter.h"
#include "Platform/Posix/SerialOperationQueues.h"
#include "Platform/Posix/SystemClock.h"
#include "Platform/Qt/QtApplication.h"
#include "Platform/Qt/QtMainQueue.h"
#include "Platform/Qt/QtPanelFocus.h"
#include "Platform/Qt/QtPasteboard.h"
#include "Platform/Qt/QtUUIDSource.h"
#include "Platform/Qt/QtWorkspace.h"
#include "Platform/Qt/ResourceBundle.h"
#include "Platform/Qt/UserFolders.h"
#include "Quillmoth/Application/HeldToggle.h"

#include <functional>
#include <memory>
#include <optional>

class QWidget;

namespace quillmoth {

/// The services of this desktop, wired together. Made once, on the main thread, after the QApplication; ends
/// before it, and after all that uses it.
class DesktopServices {
public:
    DesktopServices();
    ~DesktopServices();
    DesktopServices(const DesktopServices&) = delete;
    DesktopServices& operator=(const DesktopServices&) = delete;

    /// `panelWindows` makes the program's panel.
    [[nodiscard]] platform::Platform platform(platform::PanelWindows& panelWindows);

    [[nodiscard]] platform::PanelFocus& panelFocus();
    /// What panels stand on; null where each is a window by itself.
    [[nodiscard]] QWidget* panelStage();

    /// What places panels; null where nothing does.
    [[nodiscard]] platform::PanelPlacement* panelPlacement();

    /// What the user may let the desktop do for the program.
    [[nodiscard]] std::vector<platform::DesktopOffer> offers();

    /// How a held key repeats the command that opens the panel; none where the hot key itself is heard.
    [[nodiscard]] std::optional<HeldToggle::Repeat> commandRepeat() const;

    /// Whether windows can be translucent.
    [[nodiscard]] bool isCompositing() const;
    /// Called after that has changed.
    Subscription onCompositingChange(std::function<void()> subscriber);

    /// The virtual key code of a key of the keyboard, by the toolkit's native scan code.
    [[nodiscard]] std::optional<std::uint16_t> virtualKeyCode(std::uint32_t nativeScanCode) const;

    /// As DesktopBackEnd::inhibitShortcuts.
    [[nodiscard]] Subscription inhibitShortcuts(std::uint64_t window);

    /// Does a little later what need not hold up the start.
    void finishLaunching();

    /// The panel is shown: what a question needs is loaded in the background.
    void prepareForQuestions();

    /// The panel has gone: the application in front gets its focus back.
    void panelClosed();

    /// Called where the user is to be asked whether accessibility may be switched on for the desktop, and has
    /// not answered yet.
    void setConsentQuestion(std::function<void()> ask) { askForConsent_ = std::move(ask); }

    platform::QtMainQueue mainQueue;
    // Finishes at its end what waits to be written.
    platform::FileWriter fileWriter;
    platform::FileUserDefaults fileDefaults;
    platform::QtKeychainStore secretStore;
    platform::KeyringUserDefaults userDefaults;
    platform::FileDocuments documents{platform::documentsFolder(), fileWriter, mainQueue};
    platform::ResourceBundle bundle;
    platform::SystemClock clock;
    platform::QtUUIDSource uuidSource;
    platform::QtStatusItems statusItems;
    platform::QtApplication application;
    platform::SerialOperationQueues operationQueues;
    platform::CurlURLSessions urlSessions{operationQueues};

private:
    [[nodiscard]] std::optional<std::int64_t> frontProcess();
    [[nodiscard]] platform::QtWorkspace::Front frontHooks();
    [[nodiscard]] platform::AtSpiHooks accessibilityHooks();
    void waitForKeyring();
    [[nodiscard]] platform::DesktopBackEnd::OtherFocus otherFocus();
    [[nodiscard]] std::unique_ptr<platform::DesktopBackEnd> makeDesktop();

    platform::QtPasteboard toolkitPasteboard_;
    platform::QtPanelFocus ordinaryFocus_;
    /// Null where this kind of session offers nothing.
    std::unique_ptr<platform::DesktopBackEnd> desktop_;
    std::chrono::steady_clock::time_point focusComesBackBy_;
    platform::UnavailableHotKeyCenter noHotKeyCenter_;
    platform::UnavailableKeyboardEvents noKeyboardEvents_;
    platform::UnavailableKeyboardLayout noKeyboardLayout_;
    /// The latest one that was in front, where only its own window can say so.
    std::optional<std::int64_t> lastFront_;
    std::function<void()> askForConsent_;
    bool isPrepared_ = false;

public:
    platform::QtWorkspace workspace;
    platform::AtSpiAccessibility accessibility;
};

} // namespace quillmoth
