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

void SpokenStatus::announce(const QString& text) {
    ++announcements_;
    // Coming up is what makes it heard.
    (new SpokenMessage(text, &parent_))->show();
}

} // namespace quillmoth
