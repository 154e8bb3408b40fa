#include "Quillmoth/Shell/Windows/ImageSection.h"

#include "Quillmoth/Shell/Controls/Labels.h"
#include "Quillmoth/Shell/Controls/Switch.h"
#include "Quillmoth/Shell/Windows/FormParts.h"

#include <QBoxLayout>
#include <QPushButton>
#include <QStringList>

namespace quillmoth {

namespace {

constexpr int kUnderSwitch = 44;
constexpr int kUnderSwitchGap = 2;

const auto kPurpose =
    QStringLiteral("Whoever runs the server of an image learns that you read the answer, and what the "
                   "image's address holds. Off, an image loads when you click on its place.");

} // namespace

ImageSection::ImageSection(platform::UserDefaults& userDefaults)
    : settings_(userDefaults),
      loadSwitch_(new Switch(QStringLiteral("Load images in answers without asking"))),
      hosts_(new ToneLabel(Tone::secondary)),
      forgetButton_(makeFormButton(QStringLiteral("Ask Again for These Hosts"))) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(kUnderSwitchGap);
    column->addWidget(loadSwitch_);
    auto* purpose = new ToneLabel(Tone::secondary, kPurpose);
    for (ToneLabel* label : {purpose, hosts_}) {
        label->setContentsMargins(kUnderSwitch, 0, 0, 0);
        column->addWidget(label);
    }
    column->addSpacing(kItemSpacing / 2);
    column->addWidget(forgetButton_);
    loadSwitch_->onChange = [this](bool on) { settings_.setLoadsRemoteImages(on); };
    connect(forgetButton_, &QPushButton::clicked, this, [this] {
        settings_.forgetHosts();
        refresh();
    });
    refresh();
}

void ImageSection::refresh() {
    QStringList hosts;
    for (const std::string& host : settings_.imageHosts())
        hosts << fromUTF8(host);
    loadSwitch_->setOn(settings_.loadsRemoteImages());
    hosts_->setPlainText(QStringLiteral("Always loaded from: ") + hosts.join(QStringLiteral(", ")));
    hosts_->setVisible(!hosts.isEmpty());
    forgetButton_->setVisible(!hosts.isEmpty());
}

} // namespace quillmoth
