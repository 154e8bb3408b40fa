#include "Quillmoth/Shell/Windows/ServerSettings.h"

#include "Quillmoth/Chat/ServiceAddresses.h"
#include "Quillmoth/Shell/Controls/Labels.h"
#include "Quillmoth/Shell/Controls/Switch.h"
#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Windows/FormParts.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace quillmoth {

namespace {

const auto kUnencrypted = QStringLiteral(
    "The connection to %1 is not encrypted: others on the way could read your key and what you write. Until "
    "you agree nothing is sent with the key.");

} // namespace

ServerSettings::ServerSettings(SettingsModel& settings, const platform::Platform& platform)
    : settings_(settings), platform_(platform), connectionTest_(platform),
      addressField_(makeField(QStringLiteral("Server address"))), unencryptedNote_(new ToneLabel(Tone::bad)),
      unencryptedSwitch_(new Switch(QStringLiteral("Send the key all the same"))),
      modelField_(makeField(QStringLiteral("Name of the model on the server"))),
      testButton_(makeFormButton(QStringLiteral("Test connection"))),
      testResult_(new ToneLabel(Tone::secondary)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(kItemSpacing);
    auto* caption = new QLabel(QStringLiteral("Server"));
    caption->setFont(textFont(13, QFont::DemiBold));
    column->addWidget(caption);
    QGridLayout* grid = makeGrid();
    column->addLayout(grid);
    addressField_->setPlaceholderText(fromUTF8(kOpenAI));
    addLabel(*grid, 0, QStringLiteral("Address:"), *addressField_);
    grid->addWidget(addressField_, 0, 1);
    grid->addWidget(unencryptedNote_, 1, 1);
    grid->addWidget(unencryptedSwitch_, 2, 1);
    modelField_->setPlaceholderText(fromUTF8(settings_.offeredModels().front()));
    addLabel(*grid, 3, QStringLiteral("Model name:"), *modelField_);
    grid->addWidget(modelField_, 3, 1);
    grid->addWidget(testButton_, 4, 1, Qt::AlignLeft);
    testResult_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    testResult_->hide();
    grid->addWidget(testResult_, 5, 1);
    connect(addressField_, &QLineEdit::textChanged, this,
            [this](const QString& address) { settings_.setServerAddress(address.toStdString()); });
    connect(modelField_, &QLineEdit::textChanged, this,
            [this](const QString& model) { settings_.setServerModel(model.toStdString()); });
    connect(testButton_, &QPushButton::clicked, this, [this] { testConnection(); });
}

void ServerSettings::showUnencryptedQuestion() {
    const auto origin = settings_.unencryptedServer();
    unencryptedSwitch_->setVisible(origin.has_value());
    unencryptedNote_->setVisible(origin.has_value());
    if (!origin)
        return;
    unencryptedNote_->setPlainText(kUnencrypted.arg(fromUTF8(*origin)));
    unencryptedSwitch_->setOn(settings_.sendsKeyUnencrypted(*origin));
    unencryptedSwitch_->onChange = [this, origin = *origin](bool on) {
        settings_.setSendsKeyUnencrypted(origin, on);
    };
}

void ServerSettings::testConnection() {
    testButton_->setEnabled(false);
    const auto showResult = [this](Tone tone, const QString& text) {
        testResult_->setTone(tone);
        testResult_->setPlainText(text);
        testResult_->show();
    };
    showResult(Tone::secondary, QStringLiteral("Asking the server…"));
    connectionTest_.start([this, showResult](const ConnectionTest::Answer& answer) {
        showResult(answer.isGood ? Tone::good : Tone::bad, fromUTF8(answer.text));
        testButton_->setEnabled(true);
    });
}

void ServerSettings::refresh() {
    showText(*addressField_, settings_.serverAddress());
    showUnencryptedQuestion();
    // A name that is being rewritten may be empty for a while.
    if (!modelField_->hasFocus() || !modelField_->text().isEmpty())
        showText(*modelField_, settings_.model());
}

} // namespace quillmoth
