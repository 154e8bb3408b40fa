#include "Quillmoth/Shell/Windows/SettingView.h"

#include "Foundation/Log.h"
#include "Platform/HotKeyCenter.h"
#include "Platform/UserDefaults.h"
#include "Platform/Workspace.h"
#include "Quillmoth/Chat/ServiceAddresses.h"
#include "Quillmoth/Shell/Controls/Controls.h"
#include "Quillmoth/Shell/Controls/ShellWindow.h"
#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Windows/ConsentView.h"
#include "Quillmoth/Shell/Windows/UpdateNotice.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalBlocker>

#include <utility>

namespace quillmoth {

namespace {

constexpr int kPadding = 70;
constexpr int kItemSpacing = 14;
// Around a hairline, beyond the spacing of the items.
constexpr int kGroupSpacing = 6;
constexpr int kLabelGap = 10;
constexpr int kFieldRowSpacing = 12;
constexpr int kFormWidth = 300;
constexpr int kRecorderGap = 9;
// Under the text of a switch.
constexpr int kNoteIndent = 44;
constexpr int kNoteGap = 2;
constexpr int kEye = 16;
constexpr int kEyeMargin = 26;

const auto kPaying = QStringLiteral("Quillmoth is paying for your API usage");
const auto kOwnKey = QStringLiteral("You are using your own key\nMake sure you fill in your key correctly.");
const auto kEligibility =
    QStringLiteral("Ensure that you're eligible to use GPT-4, otherwise, you will encounter a 404 error.");

const auto kAccessibilityPurpose =
    QStringLiteral("Through it Quillmoth reads what you select in other programs, and writes answers back.");
const auto kStaysOn = QStringLiteral("Quillmoth no longer switches it on. Where it is on now, it stays on.");

QString qt(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

void addHairline(QVBoxLayout& column) {
    column.addSpacing(kGroupSpacing);
    column.addWidget(new Hairline);
    column.addSpacing(kGroupSpacing);
}

QPushButton* makeButton(const QString& title) {
    auto* button = new QPushButton(title);
    button->setAutoDefault(false);
    button->setFocusPolicy(Qt::TabFocus);
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    return button;
}

QLineEdit* makeField(const QString& name) {
    auto* field = new QLineEdit;
    field->setAccessibleName(name);
    return field;
}

QGridLayout* makeGrid() {
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(kLabelGap);
    grid->setVerticalSpacing(kFieldRowSpacing);
    grid->setColumnStretch(1, 1);
    return grid;
}

/// Both grids have the same label column.
void addLabel(QGridLayout& grid, int row, const QString& text, QWidget& control) {
    auto* label = new QLabel(text);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    label->setMinimumWidth(QFontMetrics(textFont()).horizontalAdvance(QStringLiteral("OpenAI API Key:")) + 1);
    // Screen readers take the name of a picker from its label.
    label->setBuddy(&control);
    grid.addWidget(label, row, 0);
}

/// Leaves the cursor of a field alone that shows the text already.
void showText(QLineEdit& field, const std::string& text) {
    const QString shown = qt(text);
    if (field.text() == shown)
        return;
    // What comes from the store does not go there again.
    const QSignalBlocker blocker(field);
    field.setText(shown);
}

} // namespace

const char* const kAccessibilityDoesNotAnswer =
    "The accessibility service of this desktop does not answer. Install the package at-spi2-core and log in "
    "again; until then use the alternative method to obtain the text.";

DoubleShortcut::DoubleShortcut(RecorderServices services)
    : recorder_(new RecorderCocoa(KeyboardShortcuts::Name("showFloatingPanel"), std::move(services))) {
    const auto title = QStringLiteral("Open Quillmoth Hotkey:");
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(kRecorderGap);
    row->addWidget(new QLabel(title));
    row->addWidget(recorder_);
    row->addStretch();
    recorder_->setAccessibleName(title);
    setMaximumWidth(kFormWidth);
}

SettingView::SettingView(const platform::Platform& platform, RecorderServices recorderServices,
                         Updater& updater, LaunchAtLogin& launchAtLogin,
                         std::function<void()> openPromptEditor, AccessibilityHooks accessibility)
    : _checkForUpdatesViewModel(updater), updater(updater), platform_(platform),
      settings_(platform.userDefaults), launchAtLogin_(launchAtLogin),
      openPromptEditor_(std::move(openPromptEditor)), accessibility_(std::move(accessibility)),
      connectionTest_(platform), shortcut_(new DoubleShortcut(std::move(recorderServices))),
      loginSwitch_(new Switch(QStringLiteral("Launch at login 😀"))) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(kPadding, kPadding, kPadding, kPadding);
    column->setSpacing(kItemSpacing);
    column->addWidget(shortcut_);
    addHotKeyObstacle(*column);
    column->addWidget(loginSwitch_);
    connectSwitch(*loginSwitch_, [this](bool on) {
        launchAtLogin_.setEnabled(on);
        showSwitch(*loginSwitch_, launchAtLogin_.isEnabled());
    });
    addHairline(*column);
    addKeyBlock(*column);
    addHairline(*column);
    addVersionBlock(*column);
    addHairline(*column);
    addMethodBlock(*column);
    addHairline(*column);
    addServerBlock(*column);
    column->addStretch();
    defaultsChange_ = platform_.userDefaults.onChange([this] { showSettings(); });
    refresh();
}

void SettingView::addHotKeyObstacle(QVBoxLayout& column) {
    const std::string obstacle = platform_.hotKeyCenter.obstacle();
    if (obstacle.empty())
        return;
    auto* label = new ToneLabel(Tone::secondary, qt(obstacle));
    // The command in it is to be copied.
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    column.addWidget(label);
}

void SettingView::connectSwitch(Switch& control, std::function<void(bool on)> change) {
    // Not the click: assistive technology switches without one.
    connect(&control, &Switch::toggled, this, [this, change = std::move(change)](bool on) {
        if (!isShowing_)
            change(on);
    });
}

void SettingView::showSwitch(Switch& control, bool on) {
    isShowing_ = true;
    control.setChecked(on);
    isShowing_ = false;
}

void SettingView::addKeyBlock(QVBoxLayout& column) {
    QPushButton* editor = makeButton(QStringLiteral("Open Prompt Editor"));
    connect(editor, &QPushButton::clicked, this, [this] { openPromptEditor_(); });
    column.addWidget(editor);
    keyStatus_ = new ToneLabel(Tone::bad);
    column.addWidget(keyStatus_);
    QGridLayout* grid = makeGrid();
    column.addLayout(grid);
    addKeyFields(*grid);
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
    column.addWidget(new ToneLabel(Tone::secondary, "Version: " + qt(versionString(platform_.bundle))));
    QPushButton* tutorial = makeButton(QStringLiteral("Tutorial: How to Generate Your Own Key"));
    connect(tutorial, &QPushButton::clicked, this, [this] { openTutorial(); });
    column.addWidget(tutorial);
    updateButton_ = makeButton(QStringLiteral("Check for Updates…"));
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
    const QString present = qt(versionString(platform_.bundle));
    if (const auto* failed = std::get_if<UpdateCheckFailed>(&outcome))
        showAlert(this, true, QStringLiteral("Could not check for updates."), qt(failed->description));
    else if (const auto* available = std::get_if<UpdateAvailable>(&outcome))
        showUpdateSheet(*this, {available->feed, present,
                                [this](const std::string& url) { platform_.workspace.openURL(url); }});
    else
        showAlert(this, false, QStringLiteral("Quillmoth is up to date."),
                  QStringLiteral("You have version %1.").arg(present));
}

void SettingView::showUpdateButton() {
    const QString obstacle = qt(updater.obstacle());
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
    connectSwitch(*accessibilitySwitch_, [this](bool on) { switchAccessibility(on); });
    accessibilityNote_ = new ToneLabel(Tone::secondary, kAccessibilityPurpose);
    accessibilityNote_->setContentsMargins(kNoteIndent, 0, 0, 0);
    auto* group = new QVBoxLayout;
    group->setSpacing(kNoteGap);
    group->addWidget(accessibilitySwitch_);
    group->addWidget(accessibilityNote_);
    column.addLayout(group);
    methodSwitch_ = new Switch(QStringLiteral("Use an alternative method to obtain the text"));
    connectSwitch(*methodSwitch_, [this](bool on) { settings_.setUseCopyHack(on); });
    column.addWidget(methodSwitch_);
    auto* link = new LinkButton(qt(kWebSite.substr(kWebSite.find("//") + 2)));
    connect(link, &QPushButton::clicked, this,
            [this] { platform_.workspace.openURL(std::string(kWebSite)); });
    column.addWidget(link);
}

void SettingView::addServerBlock(QVBoxLayout& column) {
    auto* caption = new QLabel(QStringLiteral("Server"));
    caption->setFont(textFont(13, QFont::DemiBold));
    column.addWidget(caption);
    QGridLayout* grid = makeGrid();
    column.addLayout(grid);
    serverField_ = makeField(QStringLiteral("Server address"));
    serverField_->setPlaceholderText(qt(kOpenAI));
    addLabel(*grid, 0, QStringLiteral("Address:"), *serverField_);
    grid->addWidget(serverField_, 0, 1);
    serverModelField_ = makeField(QStringLiteral("Name of the model on the server"));
    serverModelField_->setPlaceholderText(qt(settings_.offeredModels().front()));
    addLabel(*grid, 1, QStringLiteral("Model name:"), *serverModelField_);
    grid->addWidget(serverModelField_, 1, 1);
    testButton_ = makeButton(QStringLiteral("Test connection"));
    grid->addWidget(testButton_, 2, 1, Qt::AlignLeft);
    testResult_ = new ToneLabel(Tone::secondary);
    testResult_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    testResult_->hide();
    grid->addWidget(testResult_, 3, 1);
    connect(serverField_, &QLineEdit::textChanged, this,
            [this](const QString& address) { settings_.setServerAddress(address.toStdString()); });
    connect(serverModelField_, &QLineEdit::textChanged, this,
            [this](const QString& model) { settings_.setServerModel(model.toStdString()); });
    connect(testButton_, &QPushButton::clicked, this, [this] { testConnection(); });
}

void SettingView::testConnection() {
    testButton_->setEnabled(false);
    const auto showResult = [this](Tone tone, const QString& text) {
        testResult_->setTone(tone);
        testResult_->setPlainText(text);
        testResult_->show();
    };
    showResult(Tone::secondary, QStringLiteral("Asking the server…"));
    connectionTest_.start([this, showResult](const ConnectionTest::Answer& answer) {
        showResult(answer.isGood ? Tone::good : Tone::bad, qt(answer.text));
        testButton_->setEnabled(true);
    });
}

void SettingView::refresh() {
    showSwitch(*loginSwitch_, launchAtLogin_.isEnabled());
    showSettings();
}

void SettingView::showSettings() {
    const std::string key = settings_.apiKey();
    keyStatus_->setPlainText(key.empty() ? kPaying : kOwnKey);
    keyStatus_->setTone(key.empty() ? Tone::bad : Tone::good);
    showText(*keyField_, key);
    showKeyControl();
    warning_->setVisible(settings_.showsEligibilityWarning());
    QStringList offered;
    for (const auto& model : settings_.offeredModels())
        offered << qt(model);
    picker_->setModels(offered, qt(settings_.model()));
    showUpdateButton();
    showSwitch(*accessibilitySwitch_, settings_.accessibilityConsent().value_or(false));
    showSwitch(*methodSwitch_, settings_.useCopyHack());
    showText(*serverField_, settings_.serverAddress());
    // A name that is being rewritten may be empty for a while.
    if (!serverModelField_->hasFocus() || !serverModelField_->text().isEmpty())
        showText(*serverModelField_, settings_.model());
}

} // namespace quillmoth
