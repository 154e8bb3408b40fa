#pragma once

#include "Platform/Linux/Desktop/XDGLoginItems.h"
#include "Platform/Platform.h"
#include "Quillmoth/Shell/Windows/PresetQuestion.h"
#include "Quillmoth/Shell/Windows/SettingsWindow.h"

#include <QPointer>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QColor;
class QMenu;
class QMessageBox;

namespace quillmoth {

class ColorScheme;
class ConsentWindow;
class DataModel;
class OnboardingWindow;
class PromptEditorWindow;

/// The ordinary windows of the program. Each is made when it is first asked for, and kept. Main thread.
class ProgramWindows {
public:
    /// The services and `shortcuts` outlive the object.
    ProgramWindows(const platform::Platform& platform, KeyboardShortcuts::Center& shortcuts,
                   std::shared_ptr<DataModel> model, SettingsHooks hooks);
    ~ProgramWindows();
    ProgramWindows(const ProgramWindows&) = delete;
    ProgramWindows& operator=(const ProgramWindows&) = delete;

    /// Takes a former login item over; does so once in the life of the settings.
    void migrateLoginItem();

    /// Looks for newer versions from now on, and shows a notice of each.
    void startUpdateChecks();

    void showSettings();
    void showOnboarding();
    void showPromptEditor();
    /// The same, with the preset that came last.
    void showNewestPreset();
    /// Asks whether to add a preset that a link has brought.
    void askForPreset(PresetOffer offer);
    /// Tells why a link was refused.
    void showRefusedLink(const std::string& reason);
    void styleTrayMenu(QMenu& menu);
    /// The colour of the symbol in the tray.
    [[nodiscard]] QColor trayColour();
    /// Called after that has changed.
    std::function<void()> onTrayColourChange;

    /// The program starts for the first time: the onboarding is about to open, and nothing is to cover it.
    void expectOnboarding() { expectsOnboarding_ = true; }

    /// Asks whether accessibility may be switched on: as a step of the onboarding where that is to come.
    void askForConsent();
    /// Brings what a start shows by itself to the front; false where there is nothing of that left.
    bool showFirstSteps();

private:
    [[nodiscard]] ColorScheme& colorScheme();
    /// The same, for a window: the first one needs the program's icon.
    [[nodiscard]] ColorScheme& windowColorScheme();
    /// Gives the window what all have in common.
    void prepare(ShellWindow& window);
    void showUpdate(const UpdateFeed& feed);
    [[nodiscard]] bool isConsentWanted() const;
    void answerConsent(bool agreed);

    const platform::Platform platform_;
    KeyboardShortcuts::Center& shortcuts_;
    std::shared_ptr<DataModel> model_;
    SettingsHooks hooks_;
    platform::XDGLoginItems loginItems_;
    Updater updaterController_;
    std::unique_ptr<ColorScheme> colorScheme_;
    Subscription schemeChange_;
    bool hasWindowIcon_ = false;
    std::unique_ptr<SettingsWindow> settings_;
    std::unique_ptr<OnboardingWindow> onboarding_;
    std::unique_ptr<ConsentWindow> consent_;
    std::unique_ptr<PromptEditorWindow> promptEditor_;
    PresetQuestions presetQuestions_;
    QPointer<QMessageBox> refusedLink_;
    bool expectsOnboarding_ = false;
    bool asksForConsent_ = false;
    // Told when nothing else wants the user's attention.
    std::optional<UpdateFeed> pendingUpdate_;
};

} // namespace quillmoth
