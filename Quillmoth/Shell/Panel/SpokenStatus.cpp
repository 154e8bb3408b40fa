#include "Quillmoth/Shell/Panel/SpokenStatus.h"

#include <QTimer>

#include <chrono>

namespace quillmoth {

namespace {

/// A busy screen reader asks late for the text.
constexpr std::chrono::seconds kLife{10};

} // namespace

SpokenMessage::SpokenMessage(const QString& text, QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleName(text);
    resize(1, 1);
    QTimer::singleShot(kLife, this, [this] { deleteLater(); });
}

void SpokenStatus::follow(bool isLoading, const std::string& error) {
    if (error != error_ && !error.empty())
        announce(QString::fromStdString(error));
    else if (isLoading != isLoading_)
        announce(isLoading ? QStringLiteral("Waiting for the answer") : QStringLiteral("Answer finished"));
    error_ = error;
    isLoading_ = isLoading;
}

void SpokenStatus::announce(const QString& text) {
    // Coming up is what makes it heard.
    (new SpokenMessage(text, &parent_))->show();
}

} // namespace quillmoth
