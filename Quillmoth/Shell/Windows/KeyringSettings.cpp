#include "Quillmoth/Shell/Windows/KeyringSettings.h"

#include "Quillmoth/Settings/SettingsModel.h"
#include "Quillmoth/Shell/Controls/Labels.h"
#include "Quillmoth/Shell/Controls/Switch.h"
#include "Quillmoth/Shell/Windows/FormParts.h"

#include <QBoxLayout>
#include <QPushButton>

namespace quillmoth {

namespace {

const auto kMoving =
    QStringLiteral("The key is being moved. The desktop may ask for the keyring's password.");
const auto kNotShown = QStringLiteral("Your key is in the keyring, and can be shown when that is unlocked.");

} // namespace

KeyringSettings::KeyringSettings(SettingsModel& settings, platform::KeyKeeping& keeping)
    : settings_(settings), keeping_(keeping),
      switch_(new Switch(QStringLiteral("Keep the key in the keyring"))),
      note_(new ToneLabel(Tone::secondary)),
      unlockButton_(makeFormButton(QStringLiteral("Unlock the Keyring"))) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(kNoteGap);
    column->addWidget(switch_);
    note_->setContentsMargins(kNoteIndent, 0, 0, 0);
    column->addWidget(note_);
    auto* row = new QHBoxLayout;
    row->setContentsMargins(kNoteIndent, kItemSpacing - kNoteGap, 0, 0);
    row->addWidget(unlockButton_);
    row->addStretch();
    column->addLayout(row);
    switch_->onChange = [this](bool on) {
        keeping_.setKeepsInKeyring(on);
        refresh();
    };
    connect(unlockButton_, &QPushButton::clicked, this, [this] { settings_.unlockKey(); });
    change_ = keeping_.onChange([this] { refresh(); });
}

void KeyringSettings::refresh() {
    const std::string problem = keeping_.keepingProblem();
    const bool isHidden = !settings_.keyObstacle().empty();
    setVisible(keeping_.offersKeyring());
    // While it moves the switch shows where to.
    switch_->setEnabled(!keeping_.isMovingKey());
    if (!keeping_.isMovingKey())
        switch_->setOn(keeping_.keepsInKeyring());
    note_->setTone(problem.empty() || keeping_.isMovingKey() ? Tone::secondary : Tone::bad);
    note_->setPlainText(keeping_.isMovingKey() ? kMoving : problem.empty() ? kNotShown : fromUTF8(problem));
    note_->setVisible(keeping_.isMovingKey() || !problem.empty() || isHidden);
    unlockButton_->setVisible(isHidden && !keeping_.isMovingKey());
}

} // namespace quillmoth
