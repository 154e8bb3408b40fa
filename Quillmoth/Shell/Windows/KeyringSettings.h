#pragma once

#include "Platform/KeyKeeping.h"

#include <QWidget>

class QPushButton;

namespace quillmoth {

class SettingsModel;
class Switch;
class ToneLabel;

/// Whether the key is kept in the keyring of the desktop, and what stands in the way. Hidden where there is
/// none. Main thread.
class KeyringSettings final : public QWidget {
public:
    /// Both outlive the widget.
    KeyringSettings(SettingsModel& settings, platform::KeyKeeping& keeping);

    void lookForKeyring() { keeping_.lookForKeyring(); }

    /// Reads everything anew.
    void refresh();

private:
    SettingsModel& settings_;
    platform::KeyKeeping& keeping_;
    Switch* switch_;
    ToneLabel* note_;
    QPushButton* unlockButton_;
    Subscription change_;
};

} // namespace quillmoth
