#pragma once

#include "Platform/DesktopOffer.h"
#include "Platform/KeyKeeping.h"
#include "Platform/Platform.h"
#include "Quillmoth/Settings/LaunchAtLogin.h"
#include "Quillmoth/Settings/SettingsModel.h"
#include "Quillmoth/Settings/Updater.h"
#include "Quillmoth/Shell/Windows/RecorderCocoa.h"

#include <QPoint>
#include <QWidget>

#include <functional>
#include <string>
#include <vector>

class QGridLayout;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

namespace quillmoth {

class KeyringSettings;
class LaunchAtLoginToggle;
class ModelPicker;
class ImageSection;
class OfferSection;
class ServerSettings;
class Switch;
class ToneLabel;

/// Accessibility on this desktop.
struct AccessibilityHooks {
    /// Switches it on; false where its service does not answer.
    std::function<bool()> enable;
    /// The running programs that look for it only when they start.
    std::function<std::vector<std::string>()> programsToRestart;
};

/// What to say where it could not be switched on.
extern const char* const kAccessibilityDoesNotAnswer;

/// The content of the settings window. What is typed goes to the defaults store at once, and what changes
/// there shows here. Main thread.
class SettingView final : public QWidget {
public:
    /// The services, `updater`, `launchAtLogin` and `keyKeeping` outlive the view.
    SettingView(const platform::Platform& platform, RecorderServices recorderServices, Updater& updater,
                LaunchAtLogin& launchAtLogin, std::function<void()> openPromptEditor,
                AccessibilityHooks accessibility, platform::KeyKeeping& keyKeeping,
                std::vector<platform::DesktopOffer> offers);

    /// Reads everything anew.
    void refresh();

    bool _showFloatingWindow = false;
    QPoint _position;
    bool _onHover = false;
    CheckForUpdatesViewModel _checkForUpdatesViewModel;
    Updater& updater;

private:
    void addHotKeyBlock(QVBoxLayout& column, RecorderServices recorderServices,
                        std::vector<platform::DesktopOffer> offers);
    void addKeyBlock(QVBoxLayout& column);
    void addKeyFields(QGridLayout& grid);
    void addVersionBlock(QVBoxLayout& column);
    void addMethodBlock(QVBoxLayout& column);
    void switchAccessibility(bool on);
    void addKeyControl();
    void showSettings();
    void showKey();
    void showKeyControl();
    /// Says why the hot key does not work, where it does not.
    void showHotKeyFaults();
    void showUpdateButton();
    void showUpdateOutcome(const UpdateOutcome& outcome);
    void openTutorial();

    const platform::Platform platform_;
    SettingsModel settings_;
    const KeyboardShortcuts::Center& shortcuts_;
    std::function<void()> openPromptEditor_;
    AccessibilityHooks accessibility_;

    ToneLabel* badHotKey_;
    ToneLabel* hotKeyObstacle_;
    OfferSection* offers_ = nullptr;
    LaunchAtLoginToggle* loginToggle_;
    ToneLabel* keyStatus_;
    QLineEdit* keyField_;
    SymbolButton* keyControl_;
    KeyringSettings* keyring_;
    ToneLabel* warning_;
    ModelPicker* picker_;
    QPushButton* updateButton_;
    Switch* accessibilitySwitch_;
    ToneLabel* accessibilityNote_;
    Switch* methodSwitch_;
    ServerSettings* server_;
    ImageSection* images_;
    Subscription defaultsChange_;
    Subscription hotKeyChange_;
};

} // namespace quillmoth
