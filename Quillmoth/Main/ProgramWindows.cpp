#include "Quillmoth/Main/ProgramWindows.h"

#include "Platform/Application.h"
#include "Platform/Workspace.h"
#include "Quillmoth/Settings/SettingsModel.h"
#include "Quillmoth/Shell/Controls/ColorScheme.h"
#include "Quillmoth/Shell/Controls/MenuStyle.h"
#include "Quillmoth/Shell/Editor/PromptEditorWindow.h"
#include "Quillmoth/Shell/Looks/Palette.h"
#include "Quillmoth/Shell/Windows/ConsentView.h"
#include "Quillmoth/Shell/Windows/OnboardingWindow.h"
#include "Quillmoth/Shell/Windows/UpdateNotice.h"

#include <QApplication>
#include <QIcon>
#include <QMenu>
#include <QMessageBox>

#include <utility>

namespace quillmoth {

ProgramWindows::ProgramWindows(const platform::Platform& platform, KeyboardShortcuts::Center& shortcuts,
                               std::shared_ptr<DataModel> model, SettingsHooks hooks)
    : platform_(platform), shortcuts_(shortcuts), model_(std::move(model)), hooks_(std::move(hooks)),
      loginItems_(platform::autostartFolder(), QCoreApplication::applicationFilePath().toStdString()),
      updaterController_(platform), presetQuestions_([this] {
          auto window = std::make_unique<PresetQuestionWindow>(windowColorScheme());
          prepare(*window);
          return window;
      }) {}

ProgramWindows::~ProgramWindows() = default;

ColorScheme& ProgramWindows::colorScheme() {
    if (!colorScheme_) {
        colorScheme_ = std::make_unique<ColorScheme>();
        schemeChange_ = colorScheme_->onChange([this] {
            if (onTrayColourChange)
                onTrayColourChange();
        });
    }
    return *colorScheme_;
}

ColorScheme& ProgramWindows::windowColorScheme() {
    // The panel shows no icon, and need not wait for its drawing.
    if (!std::exchange(hasWindowIcon_, true))
        QApplication::setWindowIcon(QIcon(":/symbols/quillmoth.svg"));
    return colorScheme();
}

void ProgramWindows::prepare(ShellWindow& window) {
    window.onQuit = [this] { platform_.application.terminate(); };
}

void ProgramWindows::migrateLoginItem() {
    LaunchAtLogin(loginItems_, platform_.bundle, platform_.userDefaults).migrateIfNeeded();
}

void ProgramWindows::startUpdateChecks() {
    updaterController_.onFound = [this](const UpdateFeed& feed) { showUpdate(feed); };
    updaterController_.startChecking();
}

void ProgramWindows::showUpdate(const UpdateFeed& feed) {
    const bool isBusy = (onboarding_ && onboarding_->isVisible()) || (consent_ && consent_->isVisible());
    if (isBusy) {
        pendingUpdate_ = feed;
        return;
    }
    const auto present = QString::fromStdString(versionString(platform_.bundle));
    const UpdateNotice notice{feed, present,
                              [this](const std::string& url) { platform_.workspace.openURL(url); }};
    if (settings_ && settings_->isVisible())
        showUpdateSheet(*settings_, notice);
    else
        showUpdateWindow(windowPalette(windowColorScheme().isDark()), notice);
}

void ProgramWindows::showSettings() {
    if (!settings_) {
        settings_ = std::make_unique<SettingsWindow>(platform_, shortcuts_, loginItems_, updaterController_,
                                                     windowColorScheme(), hooks_);
        prepare(*settings_);
    }
    settings_->present();
    if (const auto feed = std::exchange(pendingUpdate_, std::nullopt))
        showUpdate(*feed);
}

void ProgramWindows::showOnboarding() {
    if (!onboarding_) {
        onboarding_ = std::make_unique<OnboardingWindow>(
            windowColorScheme(), [this] { showSettings(); },
            ConsentQuestion{.isOpen = [this] { return isConsentWanted(); },
                            .programsToRestart = hooks_.accessibility.programsToRestart,
                            .answer = [this](bool agreed) { answerConsent(agreed); }});
        prepare(*onboarding_);
    }
    onboarding_->present();
}

void ProgramWindows::showPromptEditor() {
    if (!promptEditor_) {
        promptEditor_ = std::make_unique<PromptEditorWindow>(model_, platform_, windowColorScheme());
        prepare(*promptEditor_);
    }
    promptEditor_->present();
}

void ProgramWindows::showNewestPreset() {
    showPromptEditor();
    promptEditor_->showPreset(static_cast<std::int64_t>(model_->_PromptM.get()->prompts().size()) - 1);
}

void ProgramWindows::askForPreset(PresetOffer offer) {
    if (!presetQuestions_.ask(std::move(offer)))
        showRefusedLink("Too many presets came at once. Answer the questions about the first ones.");
}

void ProgramWindows::showRefusedLink(const std::string& reason) {
    // One at a time: a page may send any number.
    if (refusedLink_)
        return;
    refusedLink_ = makeAlert(nullptr, true, QStringLiteral("A link to Quillmoth cannot be used."),
                             QString::fromStdString(reason + " Nothing was added."), {},
                             windowPalette(windowColorScheme().isDark()));
    refusedLink_->setWindowModality(Qt::NonModal);
    refusedLink_->show();
}

void ProgramWindows::styleTrayMenu(QMenu& menu) {
    constexpr int kWidth = 232;
    styleMenu(menu, windowPalette(colorScheme().isDark()));
    menu.setMinimumWidth(kWidth);
}

QColor ProgramWindows::trayColour() {
    return windowPalette(colorScheme().isDark()).color(QPalette::WindowText);
}

bool ProgramWindows::isConsentWanted() const {
    return asksForConsent_ && !SettingsModel(platform_.userDefaults).accessibilityConsent();
}

void ProgramWindows::askForConsent() {
    asksForConsent_ = true;
    if (expectsOnboarding_)
        return;
    consent_ = std::make_unique<ConsentWindow>(windowColorScheme(), hooks_.accessibility.programsToRestart(),
                                               [this](bool agreed) { answerConsent(agreed); });
    prepare(*consent_);
    consent_->present();
}

void ProgramWindows::answerConsent(bool agreed) {
    SettingsModel(platform_.userDefaults).setAccessibilityConsent(agreed);
    if (!agreed || hooks_.accessibility.enable())
        return;
    QWidget* over = onboarding_ && onboarding_->isVisible() ? onboarding_.get() : nullptr;
    auto* alert = makeAlert(over, true, QStringLiteral("Accessibility could not be switched on."),
                            QString::fromUtf8(kAccessibilityDoesNotAnswer), {},
                            windowPalette(windowColorScheme().isDark()));
    alert->setWindowModality(over != nullptr ? Qt::WindowModal : Qt::NonModal);
    alert->show();
}

bool ProgramWindows::showFirstSteps() {
    const bool isAsking = consent_ && consent_->isVisible();
    const bool isWelcoming = onboarding_ ? onboarding_->isVisible() : expectsOnboarding_;
    if (isAsking)
        consent_->present();
    else if (isWelcoming)
        showOnboarding();
    return isAsking || isWelcoming;
}

} // namespace quillmoth
