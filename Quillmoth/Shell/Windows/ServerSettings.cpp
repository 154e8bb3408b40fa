#include "Quillmoth/Shell/Windows/ServerSettings.h"

#include "Quillmoth/Chat/ServiceAddresses.h"
#include "Quillmoth/Shell/Controls/Labels.h"
#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Windows/FormParts.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace quillmoth {

ServerSettings::ServerSettings(SettingsModel& settings, const platform::Platform& platform)
    : settings_(settings), connectionTest_(platform),
      addressField_(makeField(QStringLiteral("Server address"))),
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
    modelField_->setPlaceholderText(fromUTF8(settings_.offeredModels().front()));
    addLabel(*grid, 1, QStringLiteral("Model name:"), *modelField_);
    grid->addWidget(modelField_, 1, 1);
    grid->addWidget(testButton_, 2, 1, Qt::AlignLeft);
    testResult_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    testResult_->hide();
    grid->addWidget(testResult_, 3, 1);
    connect(addressField_, &QLineEdit::textChanged, this,
            [this](const QString& address) { settings_.setServerAddress(address.toStdString()); });
    connect(modelField_, &QLineEdit::textChanged, this,
            [this](const QString& model) { settings_.setServerModel(model.toStdString()); });
    connect(testButton_, &QPushButton::clicked, this, [this] { testConnection(); });
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
    // A name that is being rewritten may be empty for a while.
    if (!modelField_->hasFocus() || !modelField_->text().isEmpty())
        showText(*modelField_, settings_.model());
}

} // namespace quillmoth
