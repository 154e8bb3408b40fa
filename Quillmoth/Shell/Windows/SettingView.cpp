#include "Quillmoth/Shell/Windows/SettingView.h"

#include "Foundation/Log.h"
#include "Platform/HotKeyCenter.h"
#include "Platform/UserDefaults.h"
#include "Platform/Workspace.h"
#include "Quillmoth/Chat/ServiceAddresses.h"
#include "Quillmoth/Shell/Controls/Buttons.h"
#include "Quillmoth/Shell/Controls/Labels.h"
#include "Quillmoth/Shell/Controls/ShellWindow.h"
#include "Quillmoth/Shell/Controls/Switch.h"
#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Windows/ConsentView.h"
#include "Quillmoth/Shell/Windows/FormParts.h"
#include "Quillmoth/Shell/Windows/ImageSection.h"
#include "Quillmoth/Shell/Windows/KeyringSettings.h"
#include "Quillmoth/Shell/Windows/LaunchAtLoginToggle.h"
#include "Quillmoth/Shell/Windows/ModelPicker.h"
#include "Quillmoth/Shell/Windows/OfferSection.h"
#include "Quillmoth/Shell/Windows/Recorder.h"
#include "Quillmoth/Shell/Windows/ServerSettings.h"
#include "Quillmoth/Shell/Windows/UpdateNotice.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>

#include <utility>

namespace quillmoth {

namespace {

constexpr int kPadding = 70;
// Around a hairline, beyond the spacing of the items.
constexpr int kGroupSpacing = 6;
constexpr int kEye = 16;
constexpr int kEyeMargin = 26;

const auto kPaying = QStringLiteral("Quillmoth is paying for your API usage");
const auto kInKeyring = QStringLiteral("In the keyring");
const auto kOwnKey = QStringLiteral("You are using your own key\nMake sure you fill in your key correctly.");
const auto kEligibility =
    QStringLiteral("Ensure that you're eligible to use GPT-4, otherwise, you will encounter a 404 error.");

const auto kBadHotKey = QStringLiteral("The stored hot key cannot be used. Record another one.");

const auto kAccessibilityPurpose =
    QStringLiteral("Through it Quillmoth reads what you select in other programs, and writes answers back.");
const auto kStaysOn = QStringLiteral("Quillmoth no longer switches it on. Where it is on now, it stays on.");

void addHairline(QVBoxLayout& column) {
    column.addSpacing(kGroupSpacing);
    column.addWidget(new Hairline);
    column.addSpacing(kGroupSpacing);
}

} // namespace

const char* const kAccessibilityDoesNotAnswer =
    "The accessibility service of this desktop does not answer. Install the package at-spi2-core and log in "
    "again; until then use the alternative method to obtain the text.";

SettingView::SettingView(const platform::Platform& platform, RecorderServices recorderServices,
                         Updater& updater, LaunchAtLogin& launchAtLogin,
                         std::function<void()> openPromptEditor, AccessibilityHooks accessibility,
                         platform::KeyKeeping& keyKeeping, std::vector<platform::DesktopOffer> offers)
    : _checkForUpdatesViewModel(updater), updater(updater), platform_(platform),
      settings_(platform.userDefaults), shortcuts_(recorderServices.shortcuts),
      openPromptEditor_(std::move(openPromptEditor)), accessibility_(std::move(accessibility)),
      badHotKey_(new ToneLabel(Tone::bad, kBadHotKey)), hotKeyObstacle_(new ToneLabel(Tone::secondary)),
      loginToggle_(new LaunchAtLoginToggle(launchAtLogin)),
      keyring_(new KeyringSettings(settings_, keyKeeping)), server_(new ServerSettings(settings_, platform_)),
      images_(new ImageSection(platform.userDefaults)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(kPadding, kPadding, kPadding, kPadding);
    column->setSpacing(kItemSpacing);
    addHotKeyBlock(*column, std::move(recorderServices), std::move(offers));
    column->addWidget(loginToggle_);
    addHairline(*column);
    addKeyBlock(*column);
    addHairline(*column);
    addVersionBlock(*column);
    addHairline(*column);
    addMethodBlock(*column);
    addHairline(*column);
    column->addWidget(server_);
    addHairline(*column);
    column->addWidget(images_);
    column->addStretch();
    defaultsChange_ = platform_.userDefaults.onChange([this] { showSettings(); });
    refresh();
}

void SettingView::addHotKeyBlock(QVBoxLayout& column, RecorderServices recorderServices,
                                 std::vector<platform::DesktopOffer> offers) {
    hotKeyChange_ = recorderServices.shortcuts.shortcutByNameDidChange(
        [this](const KeyboardShortcuts::Name&) { showHotKeyFaults(); });
    column.addWidget(new DoubleShortcut(std::move(recorderServices)));
    column.addWidget(badHotKey_);
    // The command in it is to be copied.
    hotKeyObstacle_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    column.addWidget(hotKeyObstacle_);
    if (offers.empty())
        return;
    offers_ = new OfferSection(std::move(offers));
    offers_->onChange = [this] { showHotKeyFaults(); };
    column.addWidget(offers_);
}

void SettingView::showHotKeyFaults() {
    badHotKey_->setVisible(shortcuts_.hasUnusableShortcut(DoubleShortcut::name()));
    const std::string obstacle = platform_.hotKeyCenter.obstacle();
    hotKeyObstacle_->setPlainText(fromUTF8(obstacle));
    hotKeyObstacle_->setVisible(!obstacle.empty());
}

void SettingView::addKeyBlock(QVBoxLayout& column) {
    QPushButton* editor = makeFormButton(QStringLiteral("Open Prompt Editor"));
    connect(editor, &QPushButton::clicked, this, [this] { openPromptEditor_(); });
    column.addWidget(editor);
    keyStatus_ = new ToneLabel(Tone::bad);
    column.addWidget(keyStatus_);
    QGridLayout* grid = makeGrid();
    column.addLayout(grid);
    addKeyFields(*grid);
    column.addWidget(keyring_);
}

void SettingView::addKeyFields(QGridLayout& grid) {
    const auto title = QStringLiteral("OpenAI API Key:");
    keyField_ = makeField(title);
    addLabel(grid, 0, title, *keyField_);
    grid.addWidget(keyField_, 0, 1);
    connect(keyField_, &QLineEdit::textChanged, this,
            [this](const QString& key) { settings_.setAPIKey(key.toStdString()); });
    addKeyControl();
    warning_ = new ToneLabel(Tone::bad, kEligibility);
    grid.addWidget(warning_, 1, 1);
    picker_ = new ModelPicker;
    addLabel(grid, 2, QStringLiteral("Model"), *picker_);
    picker_->setAccessibleName(QStringLiteral("Model"));
    picker_->onChoice = [this](const QString& model) { settings_.setModel(model.toStdString()); };
    grid.addWidget(picker_, 2, 1, Qt::AlignLeft);
}

void SettingView::addKeyControl() {
    keyControl_ = new SymbolButton(QStringLiteral("eye"), kEye);
    auto* row = new QHBoxLayout(keyField_);
    row->setContentsMargins(0, 0, 3, 0);
    row->addStretch();
    row->addWidget(keyControl_);
    keyField_->setTextMargins(0, 0, kEyeMargin - 7, 0);
    connect(keyControl_, &QToolButton::clicked, this,
            [this] { settings_.setHidesKey(!settings_.hidesKey()); });
}

void SettingView::showKeyControl() {
    const bool hides = settings_.hidesKey();
    const QString action = hides ? QStringLiteral("Show the key") : QStringLiteral("Hide the key");
    keyField_->setEchoMode(hides ? QLineEdit::Password : QLineEdit::Normal);
    keyControl_->setSymbol(hides ? QStringLiteral("eye.slash") : QStringLiteral("eye"));
    keyControl_->setAccessibleName(action);
    keyControl_->setToolTip(action);
}

void SettingView::addVersionBlock(QVBoxLayout& column) {
    column.addWidget(new ToneLabel(Tone::secondary, "Version: " + fromUTF8(versionString(platform_.bundle))));
    QPushButton* tutorial = makeFormButton(QStringLiteral("Tutorial: How to Generate Your Own Key"));
    connect(tutorial, &QPushButton::clicked, this, [this] { openTutorial(); });
    column.addWidget(tutorial);
    updateButton_ = makeFormButton(QStringLiteral("Check for Updates…"));
    connect(updateButton_, &QPushButton::clicked, this, [this] { updater.checkForUpdates(); });
    column.addWidget(updateButton_);
    _checkForUpdatesViewModel.onChange = [this] { showUpdateButton(); };
    updater.onOutcome = [view = QPointer(this)](const UpdateOutcome& outcome) {
        if (view)
            view->showUpdateOutcome(outcome);
    };
}

void SettingView::openTutorial() {
    if (platform_.workspace.openURL(std::string(kWebSite) + "/tutorial"))
        logLine("Successfully opened");
}

void SettingView::showUpdateOutcome(const UpdateOutcome& outcome) {
    const QString present = fromUTF8(versionString(platform_.bundle));
    if (const auto* failed = std::get_if<UpdateCheckFailed>(&outcome))
        showAlert(this, true, QStringLiteral("Could not check for updates."), fromUTF8(failed->description));
    else if (const auto* available = std::get_if<UpdateAvailable>(&outcome))
        showUpdateSheet(*this, {available->feed, present,
                                [this](const std::string& url) { platform_.workspace.openURL(url); }});
    else
        showAlert(this, false, QStringLiteral("Quillmoth is up to date."),
                  QStringLiteral("You have version %1.").arg(present));
}

void SettingView::showUpdateButton() {
    const QString obstacle = fromUTF8(updater.obstacle());
    updateButton_->setEnabled(_checkForUpdatesViewModel._canCheckForUpdates);
    updateButton_->setToolTip(obstacle);
    updateButton_->setAccessibleDescription(obstacle);
}

void SettingView::switchAccessibility(bool on) {
    settings_.setAccessibilityConsent(on);
    const bool isDone = !on || accessibility_.enable();
    accessibilityNote_->setTone(isDone ? Tone::secondary : Tone::bad);
    if (!isDone)
        accessibilityNote_->setPlainText(QString::fromUtf8(kAccessibilityDoesNotAnswer));
    else
        accessibilityNote_->setPlainText(on ? restartAdvice(accessibility_.programsToRestart()) : kStaysOn);
}

void SettingView::addMethodBlock(QVBoxLayout& column) {
    accessibilitySwitch_ = new Switch(QStringLiteral("Switch on accessibility for this desktop"));
    accessibilitySwitch_->onChange = [this](bool on) { switchAccessibility(on); };
    accessibilityNote_ = new ToneLabel(Tone::secondary, kAccessibilityPurpose);
    accessibilityNote_->setContentsMargins(kNoteIndent, 0, 0, 0);
    auto* group = new QVBoxLayout;
    group->setSpacing(kNoteGap);
    group->addWidget(accessibilitySwitch_);
    group->addWidget(accessibilityNote_);
    column.addLayout(group);
    methodSwitch_ = new Switch(QStringLiteral("Use an alternative method to obtain the text"));
    methodSwitch_->onChange = [this](bool on) { settings_.setUseCopyHack(on); };
    column.addWidget(methodSwitch_);
    auto* link = new LinkButton(fromUTF8(kWebSite.substr(kWebSite.find("//") + 2)));
    connect(link, &QPushButton::clicked, this,
            [this] { platform_.workspace.openURL(std::string(kWebSite)); });
    column.addWidget(link);
}

void SettingView::refresh() {
    loginToggle_->refresh();
    keyring_->lookForKeyring();
    if (offers_)
        offers_->refresh();
    showSettings();
}

void SettingView::showKey() {
    const std::string key = settings_.apiKey();
    const bool isElsewhere = !settings_.keyObstacle().empty();
    keyStatus_->setVisible(!isElsewhere);
    keyStatus_->setPlainText(key.empty() ? kPaying : kOwnKey);
    keyStatus_->setTone(key.empty() ? Tone::bad : Tone::good);
    keyField_->setPlaceholderText(isElsewhere ? kInKeyring : QString());
    showText(*keyField_, key);
    keyring_->refresh();
}

void SettingView::showSettings() {
    showKey();
    showHotKeyFaults();
    showKeyControl();
    warning_->setVisible(settings_.showsEligibilityWarning());
    QStringList offered;
    for (const auto& model : settings_.offeredModels())
        offered << fromUTF8(model);
    picker_->setModels(offered, fromUTF8(settings_.model()));
    showUpdateButton();
    accessibilitySwitch_->setOn(settings_.accessibilityConsent().value_or(false));
    methodSwitch_->setOn(settings_.useCopyHack());
    server_->refresh();
    images_->refresh();
}

} // namespace quillmoth
