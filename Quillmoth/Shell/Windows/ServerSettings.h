#pragma once

#include "Platform/Platform.h"
#include "Quillmoth/Settings/ConnectionTest.h"
#include "Quillmoth/Settings/SettingsModel.h"

#include <QWidget>

class QLineEdit;
class QPushButton;

namespace quillmoth {

class Switch;
class ToneLabel;

/// The part of the settings for the server that answers, with a test of the connection to it.
class ServerSettings final : public QWidget {
public:
    /// `settings` and the services outlive it.
    ServerSettings(SettingsModel& settings, const platform::Platform& platform);

    /// Shows what the settings hold.
    void refresh();

private:
    void testConnection();
    /// Asks whether the key may go to a server that is reached without encryption, where the address is one.
    void showUnencryptedQuestion();

    SettingsModel& settings_;
    const platform::Platform platform_;
    ConnectionTest connectionTest_;
    QLineEdit* addressField_;
    ToneLabel* unencryptedNote_;
    Switch* unencryptedSwitch_;
    QLineEdit* modelField_;
    QPushButton* testButton_;
    ToneLabel* testResult_;
};

} // namespace quillmoth
