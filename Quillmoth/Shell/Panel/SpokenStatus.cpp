#include "Quillmoth/Shell/Panel/SpokenStatus.h"

#include <QAccessible>

namespace quillmoth {

SpokenStatus::SpokenStatus(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    resize(1, 1);
}

void SpokenStatus::announce(const QString& text) {
    ++announcements_;
    // Tells of a changed name by itself.
    setAccessibleName(text);
    if (!QAccessible::isActive() || !isVisible())
        return;
    // Screen readers speak a notification when it comes up.
    QAccessibleEvent event(this, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&event);
}

} // namespace quillmoth
